#pragma once

#include "shell/session.h"

namespace quill::decoder {

/// Opens the guide that helps with a file that could not be decoded, on `EncodedPath`. Every way out of it but its side
/// programs and its tutorial ends the process.
void show_repair_guide(shell::Context& context);

}  // namespace quill::decoder
