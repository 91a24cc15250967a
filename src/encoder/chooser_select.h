#pragma once

#include "encoder/file_chooser.h"

namespace quill::encoder {

/// What the button Select does, and a double click on a file: the work of the chooser's mode on the selected files.
void select_files(shell::Context& context, cmdg& chooser);

/// What the button Cancel does (it reads "Done" once a file was collected): back to the main window.
void cancel_chooser(shell::Context& context, cmdg& chooser);

}  // namespace quill::encoder
