#pragma once

#include "shell/session.h"

namespace quill::viewer {

/// Asks for a name and writes all pictures of the current favorites list into one album of that name. A file that is
/// there already stays. Reports pictures that are not there, and the end.
void make_album_of_list(shell::Context& context);

}  // namespace quill::viewer
