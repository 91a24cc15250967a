#pragma once

#include "zip/archive.h"

#include <optional>
#include <string_view>
#include <vector>

namespace quill::zip {

/// Finds the directory through its end record (APPNOTE 4.3.14 to 4.3.16), with whatever stands before the archive or
/// behind it. Nullopt where no end record leads to one.
std::optional<Directory> find_directory(std::string_view bytes);

struct DirectoryContent {
    std::vector<Member> members;  ///< in the directory's order, names not decoded yet
    std::vector<Problem> problems;
    bool whole = true;  ///< false: headers in it are unreadable or missing, so members may be
};

/// Reads the headers of a directory. One that can't be read is passed over.
DirectoryContent read_directory(std::string_view bytes, const Directory& directory);

}  // namespace quill::zip
