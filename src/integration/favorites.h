#pragma once

#include "text/result.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Favorite directories: one file `caption.hyp` each, whose only line is directory + "/^" + caption, ended by CR LF.
/// The separator before the '^' may also be a backslash. A directory that begins with '!' is in the user's profile.
namespace quill::integration {

struct Favorite {
    std::string caption;    ///< as displayed
    std::string directory;  ///< absolute, without a slash at its end unless it is the root

    bool operator==(const Favorite&) const = default;
};

/// Parses the first field of a favorite's file; nullopt if it is malformed. `profile` is the user's own directory,
/// which replaces "!". Does not check whether the directory exists.
std::optional<Favorite> parse_favorite(std::string_view contents, std::string_view profile);

/// Returns the text of a favorite's file. Quotes a line with a comma, which would end the field.
std::string format_favorite(const Favorite& favorite);

/// Returns the favorites in `dir`, in the order of its file list, without malformed ones and those whose directory does
/// not exist.
std::vector<Favorite> read_favorites(const std::string& dir, std::string_view profile);

/// Writes a favorite into `dir`, under its caption; replaces one with the same caption. Fails with `bad_argument` for a
/// caption that can't be a file name, or with the system's reason.
Status write_favorite(const std::string& dir, const Favorite& favorite);

/// Gives a directory without any favorite those that most users have: their own directory and the usual ones in it. As
/// always, those that do not exist on this machine are not shown.
void make_first_favorites(const std::string& dir);

}  // namespace quill::integration
