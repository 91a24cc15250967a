#pragma once

#include "zip/archive_window.h"

/// What other programs do to the archive while it is open.
namespace quill::zip {

/// Returns true where the archive is still what the rows show. Else asks whether to read it again or to go on with the
/// archive as it was, under a new name.
bool archive_is_ours(arcview& w);

/// Does the same, once for each change.
void notice_foreign_change(arcview& w);

}  // namespace quill::zip
