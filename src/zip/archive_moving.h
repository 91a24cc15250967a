#pragma once

#include "zip/archive_window.h"

/// Moving members' files out of WorkDir.
namespace quill::zip {

/// Moves the files of the panel's rows to its directory, never over an existing file. Copies the user's own files,
/// which were added to the archive, and leaves them. Asks about changed files first. Closes the window after all files
/// were moved; reports those that can't be moved and leaves them.
void move_files(arcview& w);

}  // namespace quill::zip
