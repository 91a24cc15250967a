#pragma once

#include "shell/session.h"

#include <string>

namespace quill::decoder {

/// Option 2 of the main window with a file in hand: offers to have it checked for viruses.
void scanbutt(shell::Context& context);

/// Asks whether an anti-virus program is to be chosen, and on Yes goes the route `choose_scanner` with the file at
/// `path`. The choice is not kept.
void offer_scan(shell::Context& context, const std::string& path);

/// Starts the anti-virus program `program` in `directory` on the file at `path`, which itself is never started. Does
/// not wait for it; a program that can't be started is passed over. A file that is not there makes an empty argument.
void start_scan(platform::Platform& platform, const std::string& program, const std::string& directory,
                const std::string& path);

}  // namespace quill::decoder
