#pragma once

#include "shell/session.h"
#include "zip/new_zip.h"

namespace quill::htx {

/// Shows archives that are books in the reader, and lets the create wizard size a book's window there. Both arguments
/// must outlive the last book.
void provide_reader(shell::Context& context, zip::NewZIP& archives);

}  // namespace quill::htx
