#pragma once

#include "shell/session.h"

namespace quill::encoder {

/// Shows the window that makes a favorite of a directory, beginning at `directory`. Its button asks for a caption,
/// writes the favorite, brings the chooser's list up to date where that window is open, and closes the window.
void show_link_window(shell::Context& context, const std::string& directory);

}  // namespace quill::encoder
