#pragma once

#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// A file or a directory that is to go into an archive.
struct TreeEntry {
    std::string path;
    std::string member_name;  ///< relative, parts between slashes, without "." and ".."
    bool is_directory = false;
    std::time_t modified = 0;  ///< of a directory
};

/// `path` itself where it is no directory (there or not); else it and all that is in it, sorted, hidden files too.
/// Links to directories are not followed.
std::vector<TreeEntry> walk_tree(const std::string& path);

/// `path` as a member's name: without what makes it absolute or climb.
std::string member_name_of(std::string_view path);

}  // namespace quill::zip
