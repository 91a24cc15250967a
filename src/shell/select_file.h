#pragma once

#include "shell/session.h"

#include <string>

namespace quill::shell {

/// Makes the file at `path` the selected one, as though it were named on the command line: `SelectedDir`,
/// `SelectedFile` and `WorkDir` follow, and the options offer it; the start panel shows. A path without a directory
/// leaves `SelectedDir` as it was. A file of length 0 is selected without being offered; one that is not there is
/// offered.
void offer_file(Context& context, const std::string& path);

/// Asks for a file with the desktop's own dialog and offers it: what opens a file where there is no file chooser.
void choose_and_offer_file(Context& context);

/// The path of the selected file.
std::string selected_path(const Session& session);

}  // namespace quill::shell
