#pragma once

#include "shell/session.h"

#include <string>

namespace quill::encoder {

/// Encodes the file at `path`, which the chooser picked, as one yEnc post. The output's path is `path` with "ync" for
/// its last three characters; what stands there is replaced once the output is whole, unless it is the input. A failure
/// is said in a message box and leaves everything as it was. Closes the chooser and shows the main window.
void yencod(shell::Context& context, const std::string& path);

}  // namespace quill::encoder
