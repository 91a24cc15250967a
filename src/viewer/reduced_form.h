#pragma once

#include "controls/control.h"
#include "shell/session.h"

namespace quill::viewer {

/// Gives the items of a Help menu (1, 3 and 5) their captions and actions.
void caption_help(controls::ControlArray<controls::MenuItem>& items);
void wire_help(shell::Context& context, controls::ControlArray<controls::MenuItem>& items);

/// Explains why some items of the viewer's menus are grey.
void microhelp(platform::Platform& platform);

}  // namespace quill::viewer
