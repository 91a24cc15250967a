#pragma once

#include "zip/archive_window.h"

/// The ways out of the archive window, and what becomes of the files in WorkDir.
namespace quill::zip {

/// Deletes the files that this window has made and nobody has changed, and leaves. Changed files are asked about first.
/// Does nothing where WorkDir can't be entered.
void RepackAndExit(arcview& w);

/// Asks, and leaves with all files staying in WorkDir.
void gogo(arcview& w);

/// The window's close box: asks about changed files. The files stay in WorkDir, unless that is private to this window
/// and so of no use to anybody.
void close_archive_window(arcview& w);

/// Leaves after a book was read: deletes the files that were made for it and nobody has changed.
void close_book_archive(arcview& w);

/// Deletes the files that this window has made and nobody has changed, and leaves; stays where the user stops that.
void clear_away_and_leave(arcview& w);

}  // namespace quill::zip
