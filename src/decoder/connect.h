#pragma once

#include "shell/session.h"

namespace quill::decoder {

/// Fills in the routes to the decoder and the actions of the results panel. `context` must outlive them.
void connect_decoder(shell::Context& context);

}  // namespace quill::decoder
