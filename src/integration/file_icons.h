#pragma once

#include <string>
#include <string_view>

namespace quill::integration {

/// The icon of a file's type.
struct FileIcon {
    std::string_view name;  ///< icon name of freedesktop.org's icon naming; empty for a blank picture
    bool small = true;      ///< row size, not desktop size

    bool operator==(const FileIcon&) const = default;
};

/// Returns the icon of the file at `path`, by the type that its name indicates; blank if there is no such file. `size`
/// 1 asks for a small one. The desktop draws it from its icon theme, or draws its own if the theme has none.
FileIcon getticon(const std::string& path, int size);

}  // namespace quill::integration
