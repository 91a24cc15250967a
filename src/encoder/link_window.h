#pragma once

#include "shell/session.h"

namespace quill::encoder {

/// Shows the window that makes a favorite of a directory, starting at `directory`. Its button asks for a caption,
/// writes the favorite, updates the chooser's list if that window is open, and closes the window.
void show_link_window(shell::Context& context, const std::string& directory);

}  // namespace quill::encoder
