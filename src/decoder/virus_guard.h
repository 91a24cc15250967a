#pragma once

#include "shell/session.h"

#include <string>

namespace quill::decoder {

/// Option 2 of the main window with a file in hand: offers to have it checked for viruses.
void scanbutt(shell::Context& context);

/// Asks whether an anti-virus program is to be chosen, and on Yes goes the route `choose_scanner` with the file at
/// `path`. The choice is not kept.
void offer_scan(shell::Context& context, const std::string& path);

}  // namespace quill::decoder
