#pragma once

#include <functional>
#include <span>
#include <string>

namespace quill::shell {

/// Joins the arguments of the process, without the program's own name, into the one line that start-up parses.
///
/// Makes paths absolute, so call it before the program changes its directory. Puts an argument with a blank in double
/// quotes, except after a switch: the rest of such a line is read as a whole. Leaves out empty arguments.
std::string command_line_of(std::span<const std::string> arguments);

/// Returns true if something other than a directory exists at `path`.
bool names_a_file(const std::string& path);

/// The request of the command line.
struct Start {
    bool no_file = false;        ///< `?`
    bool hides_options = false;  ///< no path is left: the heading of the options is hidden
    bool create = false;         ///< `/ue` or `/um`
    bool create_htx = false;     ///< `/um`
    bool choose = false;         ///< `/de`: opens the file chooser
    bool open_at_once = false;   ///< `/un` or `/unp`
    bool unpacks_apart = false;  ///< `/unp`: into the program's own directory, not beside the archive
    bool view_only = false;      ///< `/vi`
    std::string path = {};       ///< the file named

    bool operator==(const Start&) const = default;
};

/// Parses the line. A line that names an existing file is a path, whatever it begins with. If the line begins with `&`
/// (the choice of the second yEnc decoder), names no file, and the rest names one, the `&` is dropped. `names_a_file`
/// returns true for a path that leads to a file.
Start parse_command_line(const std::string& line, const std::function<bool(const std::string& path)>& names_a_file);

}  // namespace quill::shell
