#pragma once

#include "shell/session.h"

namespace quill::encoder {

/// Fills the routes to the file chooser: opening a file, encoding one, choosing an anti-virus program. `context` must
/// outlive its routes' last call.
void provide_chooser(shell::Context& context);

}  // namespace quill::encoder
