#pragma once

#include "shell/session.h"
#include "text/result.h"

#include <string>

namespace quill::shell {

/// The load step of the main window: fixes the directories, sizes the window, reads `CommandLine` and does what kind of
/// start it asks for. Loads the main window and connects its actions. Steps that fail are passed over.
///
/// REQUIRES: the current directory is the one to be `AppDir`; `CommandLine` is set; the routes are filled.
void start(Context& context);

/// The directory that program data of the user lies in: `$XDG_DATA_HOME/quillbright`, else
/// `~/.local/share/quillbright`.
std::string data_directory();

/// Makes the program's fixed directories below `data` (mode 0700) where they are missing, and makes its `program`
/// directory the current one, so that `start` finds it as `AppDir`. Fails with the first directory that can't be made.
Status enter_program_directory(const std::string& data);

/// `name` in the directory above `AppDir`.
std::string in_parent_directory(const Session& session, const std::string& name);

}  // namespace quill::shell
