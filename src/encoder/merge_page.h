#pragma once

#include "encoder/file_chooser.h"

namespace quill::encoder {

/// Fills the actions of the chooser's merge page: selecting the files that hold the parts of one attachment, and
/// joining them into `merged.txt` beside them, which the main window then offers for decoding.
void wire_merge_page(shell::Context& context, cmdg& chooser);

}  // namespace quill::encoder
