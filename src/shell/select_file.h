#pragma once

#include "shell/session.h"

#include <string>

namespace quill::shell {

/// Makes the file at `path` the selected one, as though it were named on the command line: sets `SelectedDir`,
/// `SelectedFile` and `WorkDir`, offers it in the options, and shows the start panel. A path without a directory keeps
/// `SelectedDir`. A file of length 0 is selected without being offered; a missing one is offered.
void offer_file(Context& context, const std::string& path);

/// Asks for a file with the desktop's own dialog and offers it: used if there is no file chooser.
void choose_and_offer_file(Context& context);

/// Returns the path of the selected file.
std::string selected_path(const Session& session);

}  // namespace quill::shell
