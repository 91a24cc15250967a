#pragma once

#include "shell/session.h"
#include "viewer/save_pictures.h"

namespace quill::viewer {

/// Shows the window that copies all pictures of the current favorites list into a directory.
SavPic& show_copy_job(shell::Context& context);

}  // namespace quill::viewer
