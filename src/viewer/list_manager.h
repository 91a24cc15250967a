#pragma once

#include "shell/session.h"
#include "viewer/save_pictures.h"

namespace quill::viewer {

/// Shows the window that manages the favorites lists. A click on a list makes it the current one, a double click opens
/// it in the column.
SavPic& show_list_manager(shell::Context& context);

}  // namespace quill::viewer
