#pragma once

#include "encoder/file_chooser.h"

namespace quill::encoder {

/// Handles the button Select and a double click on a file: does the work of the chooser's mode on the selected files.
void select_files(shell::Context& context, cmdg& chooser);

/// Handles the button Cancel (captioned "Done" once a file was collected): returns to the main window.
void cancel_chooser(shell::Context& context, cmdg& chooser);

}  // namespace quill::encoder
