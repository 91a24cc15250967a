#pragma once

#include "text/result.h"

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

enum class EntryKind : std::uint8_t { file, directory, link };

/// An entry to add to an archive.
struct TreeEntry {
    std::string path;
    std::string member_name;  ///< relative, parts between slashes, without "." and ".."
    EntryKind kind = EntryKind::file;
    std::time_t modified = 0;                        ///< of a directory
    std::optional<Error> unreadable = std::nullopt;  ///< why the entries of a directory are missing
};

/// The meaning of a path that is itself a symbolic link.
enum class NamedLink : std::uint8_t { kept, followed };

/// Returns `path` itself if it is not a directory (existing or not); else it and all its contents, sorted, with hidden
/// files. Links in the tree are entries themselves and are not followed; `path` is followed only if `named` or a slash
/// at its end requests it.
std::vector<TreeEntry> walk_tree(const std::string& path, NamedLink named = NamedLink::kept);

/// Returns `path` as a member's name, without parts that make it absolute or climb.
std::string member_name_of(std::string_view path);

}  // namespace quill::zip
