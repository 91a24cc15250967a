#pragma once

#include "zip/archive_window.h"

/// Moving members' files out of WorkDir.
namespace quill::zip {

/// Moves the files of the panel's rows to its directory, never over a file that is there. The user's own files, which
/// were added to the archive, are copied there and stay. Asks about changed files first. After all files were moved the
/// window closes; those that can't be moved are reported and stay.
void move_files(arcview& w);

}  // namespace quill::zip
