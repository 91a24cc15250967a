#pragma once

#include "archive/container/archive.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quill::zip {

/// Finds the directory through its end record (APPNOTE 4.3.14 to 4.3.16), even with other bytes before or after the
/// archive. Nullopt if no end record leads to one.
std::optional<Directory> find_directory(std::string_view bytes);

struct DirectoryContent {
    std::vector<Member> members;  ///< in the directory's order, names not decoded yet
    std::vector<Problem> problems;
    bool whole = true;  ///< false: headers in it are unreadable or missing, so members may be missing
};

/// Returns how many members an archive of that many bytes can have: each needs two headers of its own. Small ones may
/// have some more.
std::size_t most_members(std::uint64_t archive_size);

/// Reads the headers of a directory, at most `most_members`. Skips those that can't be read.
DirectoryContent read_directory(std::string_view bytes, const Directory& directory);

}  // namespace quill::zip
