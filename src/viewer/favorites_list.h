#pragma once

#include "text/result.h"

#include <string>
#include <string_view>
#include <vector>

/// Lists of favorite pictures: text files with the path of a picture on each line. People edit them by hand, so that a
/// change keeps every byte that it does not concern: comments, empty lines, lines that make no sense.
namespace quill::viewer {

/// Makes the list at `path` where there is none. Fails with the system's reason.
Status make_favorites_list(const std::string& path);

/// Returns the pictures of the list at `path`, absolute, in their order, whether they are there or not. A line is a
/// path, relative to the list's directory unless it is absolute. One that names no file is read as fields, commas
/// between them, each a path. Lines that are empty or begin with '#' name no picture. Empty for a list that can't be
/// read.
std::vector<std::string> favorite_pictures(const std::string& path);

/// What came of adding a picture.
enum class Added { added, was_there };

/// Appends the picture to the list at `path`, which is made where there is none. A picture below the list's directory
/// is written relative to that. Fails with the system's reason; the list is then as it was.
Result<Added> add_favorite(const std::string& path, const std::string& picture);

/// Removes all entries for `picture`. Fails with the system's reason; the list is then as it was.
Status remove_favorite(const std::string& path, const std::string& picture);

/// Whether the two paths mean one picture: they are equal, or are so but for capitals and don't name two files.
bool is_same_picture(const std::string& a, const std::string& b);

}  // namespace quill::viewer
