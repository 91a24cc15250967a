#pragma once

#include "shell/session.h"

#include <string>

namespace quill::decoder {

/// Option 2 of the main window with a file selected: offers to have it checked for viruses.
void scanbutt(shell::Context& context);

/// Has the file at `path` checked by the program of this run, or by an anti-virus program that is installed, if the
/// user agrees. Otherwise asks whether to choose one, and on Yes follows the route `choose_scanner`.
void offer_scan(shell::Context& context, const std::string& path);

/// Has the file at `path` checked by `program`, the anti-virus program of this run from now on. The answer of a program
/// whose answers are known is waited for, and shown in the row of the file and in a message; the user can stop that.
/// Any other program is only started, in `directory`. The file itself is never started.
void scan_with(shell::Context& context, const std::string& program, const std::string& path,
               const std::string& directory);

}  // namespace quill::decoder
