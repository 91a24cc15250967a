#pragma once

#include "text/result.h"

#include <string>
#include <string_view>
#include <vector>

/// Lists of favorite pictures: text files with the path of a picture on each line. People edit them by hand, so a
/// change keeps every unrelated byte: comments, empty lines, invalid lines.
namespace quill::viewer {

/// Makes the list at `path` if it does not exist. Fails with the system's reason.
Status make_favorites_list(const std::string& path);

/// Returns the pictures of the list at `path` as absolute paths, in their order, whether they exist or not. A line is a
/// path, relative to the list's directory unless it is absolute. A line that does not name a file is read as fields
/// separated by commas, each a path. Lines that are empty or begin with '#' name no picture. Returns nothing for a list
/// that can't be read.
std::vector<std::string> favorite_pictures(const std::string& path);

/// The result of adding a picture.
enum class Added { added, was_there };

/// Appends the picture to the list at `path`, making the list if necessary. A picture below the list's directory is
/// written relative to it. Fails with the system's reason and leaves the list unchanged.
Result<Added> add_favorite(const std::string& path, const std::string& picture);

/// Removes all entries for `picture`. Fails with the system's reason and leaves the list unchanged.
Status remove_favorite(const std::string& path, const std::string& picture);

/// Returns true if the two paths mean the same picture: they are equal, or differ only in case and don't name two
/// files.
bool is_same_picture(const std::string& a, const std::string& b);

}  // namespace quill::viewer
