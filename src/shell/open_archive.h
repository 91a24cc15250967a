#pragma once

#include "shell/session.h"

namespace quill::shell {

/// Opens the selected ZIP or HTX file in the archive window, asking for its password if a member is encrypted. No
/// answer ends the process.
void openarchive(Context& context);

/// Shows the contents of the selected ZIP or HTX file in the contents window.
void show_contents(Context& context);

}  // namespace quill::shell
