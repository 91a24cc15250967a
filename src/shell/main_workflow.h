#pragma once

#include "shell/session.h"

/// What the main window's options, choices and menus do.
namespace quill::shell {

/// Fills in the actions of the main window. `context` must outlive it.
void connect_main_window(Context& context);

/// Picks a file, or decodes or opens the selected one.
void option_1(Context& context);

/// Opens the create wizard, or has the selected file scanned.
void option_2(Context& context);

/// Lists what the selected archive holds.
void option_3(Context& context);

/// Opens the user guide.
void open_user_guide(Context& context);

}  // namespace quill::shell
