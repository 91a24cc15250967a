#pragma once

#include "shell/session.h"

#include <string>

namespace quill::decoder {

/// Handles option 2 of the main window with a file selected: offers to check it for viruses.
void scanbutt(shell::Context& context);

/// Checks the file at `path` with the program of this run, or with an installed anti-virus program, if the user agrees.
/// Otherwise asks whether to choose one, and on Yes follows the route `choose_scanner`.
void offer_scan(shell::Context& context, const std::string& path);

/// Checks the file at `path` with `program`, which becomes the anti-virus program of this run. If the meaning of its
/// exit status is known, waits for it and shows the answer in the row of the file and in a message; the user can stop
/// that. Only starts any other program, in `directory`. Never starts the file itself.
void scan_with(shell::Context& context, const std::string& program, const std::string& path,
               const std::string& directory);

}  // namespace quill::decoder
