#pragma once

#include "controls/control.h"
#include "shell/session.h"

namespace quill::viewer {

/// Sets the captions and actions of a Help menu's items (1, 3 and 5).
void caption_help(controls::ControlArray<controls::MenuItem>& items);
void wire_help(shell::Context& context, controls::ControlArray<controls::MenuItem>& items);

/// Explains why some items of the viewer's menus are greyed out.
void microhelp(platform::Platform& platform);

}  // namespace quill::viewer
