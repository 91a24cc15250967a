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

/// What is to go into an archive.
struct TreeEntry {
    std::string path;
    std::string member_name;  ///< relative, parts between slashes, without "." and ".."
    EntryKind kind = EntryKind::file;
    std::time_t modified = 0;                        ///< of a directory
    std::optional<Error> unreadable = std::nullopt;  ///< why the entries of a directory are missing
};

/// What a path that is itself a symbolic link means.
enum class NamedLink : std::uint8_t { kept, followed };

/// Returns `path` itself where it is not a directory (there or not); else it and all that is in it, sorted, hidden
/// files too. Links in the tree are entries of their own and are not followed, and neither is `path` unless `named` or
/// a slash at its end asks for what it leads to.
std::vector<TreeEntry> walk_tree(const std::string& path, NamedLink named = NamedLink::kept);

/// `path` as a member's name: without what makes it absolute or climb.
std::string member_name_of(std::string_view path);

}  // namespace quill::zip
