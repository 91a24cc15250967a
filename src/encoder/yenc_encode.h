#pragma once

#include "shell/session.h"

#include <string>

namespace quill::encoder {

/// Encodes the file at `path`, which the chooser picked, as one yEnc post. The output's path is `path` with "ync" for
/// its last three characters; asks what to do where that is the name of another file. A failure is said in a message
/// box and leaves everything as it was. Closes the chooser and shows the main window, unless the user has withdrawn.
void yencod(shell::Context& context, const std::string& path);

}  // namespace quill::encoder
