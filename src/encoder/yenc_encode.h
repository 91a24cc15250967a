#pragma once

#include "shell/session.h"

#include <string>

namespace quill::encoder {

/// Encodes the file at `path`, which the chooser picked, as one yEnc post. The output's path is `path` with "ync" for
/// its last three characters; asks what to do if another file has that name. Reports a failure in a message box and
/// leaves everything unchanged. Closes the chooser and shows the main window, unless the user has withdrawn.
void yencod(shell::Context& context, const std::string& path);

}  // namespace quill::encoder
