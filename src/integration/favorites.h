#pragma once

#include "text/result.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Favorite directories: one file `caption.hyp` each, whose only line is directory + "/^" + caption, ended by CR LF.
/// The separator before the '^' may be a backslash as well. A directory that begins with '!' lies in the user's
/// profile.
namespace quill::integration {

struct Favorite {
    std::string caption;    ///< as shown
    std::string directory;  ///< absolute, without a slash at its end unless it is the root

    bool operator==(const Favorite&) const = default;
};

/// What the first field of a favorite's file says; nullopt for a malformed one. `profile` is the user's own directory,
/// which takes the place of "!". Does not ask whether the directory exists.
std::optional<Favorite> parse_favorite(std::string_view contents, std::string_view profile);

/// The text of a favorite's file. A line with a comma, which would end the field, is put in quotes.
std::string format_favorite(const Favorite& favorite);

/// The favorites in `dir`, in the order of its file list, without those that are malformed or whose directory is not
/// there.
std::vector<Favorite> read_favorites(const std::string& dir, std::string_view profile);

/// Writes a favorite into `dir`, under its caption; one of that caption is replaced. Fails with `bad_argument` for a
/// caption that can be no file name, or with the system's reason.
Status write_favorite(const std::string& dir, const Favorite& favorite);

/// Gives a directory without any favorite those that most users have: their own directory and the usual ones in it.
/// Those that do not exist on this machine are not shown, as ever.
void make_first_favorites(const std::string& dir);

}  // namespace quill::integration
