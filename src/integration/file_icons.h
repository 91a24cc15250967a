#pragma once

#include <string>
#include <string_view>

namespace quill::integration {

/// The small picture that stands for a file's type.
struct FileIcon {
    std::string_view name;  ///< of the icon, as freedesktop.org's icon naming has it; empty for a blank picture
    bool small = true;      ///< of the size of a row, not of a desktop icon

    bool operator==(const FileIcon&) const = default;
};

/// The icon of the file at `path`, by the type that its name tells; blank where there is no such file. `size` 1 asks
/// for a small one. The desktop draws it from its icon theme, or draws one of its own where the theme has none.
FileIcon getticon(const std::string& path, int size);

}  // namespace quill::integration
