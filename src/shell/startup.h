#pragma once

#include "shell/session.h"
#include "text/result.h"

#include <string>

namespace quill::shell {

/// Runs the load step of the main window: fixes the directories, sizes the window, reads `CommandLine` and starts as it
/// requests. Loads the main window and connects its actions. Ignores steps that fail.
///
/// REQUIRES: the current directory is the future `AppDir`; `CommandLine` is set; the routes are filled.
void start(Context& context);

/// Returns true if a file may be offered without taking anything from the user: only the main window is open, and it
/// shows its start panel alone.
bool awaits_file(Context& context);

/// Does what a start on `command_line` does, in the program that is already running. REQUIRES: `awaits_file`.
void start_again(Context& context, const std::string& command_line);

/// Returns the directory of the user's program data: `$XDG_DATA_HOME/quillbright`, else `~/.local/share/quillbright`.
std::string data_directory();

/// Makes the program's missing fixed directories below `data` (mode 0700) and makes its `program` directory the current
/// one, which `start` uses as `AppDir`. Fails with the first directory that can't be made.
Status enter_program_directory(const std::string& data);

/// Returns `name` in the directory above `AppDir`.
std::string in_parent_directory(const Session& session, const std::string& name);

}  // namespace quill::shell
