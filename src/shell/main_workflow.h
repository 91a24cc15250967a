#pragma once

#include "shell/session.h"

/// The actions of the main window's options, choices and menus.
namespace quill::shell {

/// Fills in the actions of the main window. `context` must outlive it.
void connect_main_window(Context& context);

/// Selects a file, or decodes or opens the selected one.
void option_1(Context& context);

/// Opens the create wizard, or scans the selected file.
void option_2(Context& context);

/// Lists the contents of the selected archive.
void option_3(Context& context);

/// Opens the user guide.
void open_user_guide(Context& context);

}  // namespace quill::shell
