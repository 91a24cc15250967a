#pragma once

#include <functional>
#include <span>
#include <string>

namespace quill::shell {

/// The arguments of the process, without the program's own name, as the one line that start-up takes apart.
///
/// Paths are made absolute, so this is called before the program changes its directory. An argument with a blank is
/// put in double quotes, but not behind a switch: the rest of such a line is taken whole. Empty arguments are left out.
std::string command_line_of(std::span<const std::string> arguments);

/// Whether something other than a directory is at `path`.
bool names_a_file(const std::string& path);

/// What the command line asks for.
struct Start {
    bool no_file = false;        ///< `?`
    bool hides_options = false;  ///< no path is left: the heading of the options goes
    bool create = false;         ///< `/ue` or `/um`
    bool create_htx = false;     ///< `/um`
    bool open_at_once = false;   ///< `/un` or `/unp`
    bool unpacks_apart = false;  ///< `/unp`: into the program's own directory, not beside the archive
    bool view_only = false;      ///< `/vi`
    std::string path = {};       ///< the file named

    bool operator==(const Start&) const = default;
};

/// Takes the line apart. A line that names a file which is there is a path, whatever it begins with. A line that begins
/// with `&` (the choice of the second yEnc decoder) and names none is taken without it where the rest names one.
/// `names_a_file` says whether a path leads to a file.
Start parse_command_line(const std::string& line, const std::function<bool(const std::string& path)>& names_a_file);

}  // namespace quill::shell
