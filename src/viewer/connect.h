#pragma once

#include "shell/session.h"

namespace quill::viewer {

/// Fills the routes to pictures: the window that opens them, albums, directories, sets, favorites lists. `context` must
/// outlive their last call.
void provide_viewer(shell::Context& context);

}  // namespace quill::viewer
