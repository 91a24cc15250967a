#pragma once

#include "zip/archive_window.h"

/// The ways out of the archive window, and the treatment of the files in WorkDir.
namespace quill::zip {

/// Deletes the files that this window made and nobody has changed, and leaves. Asks about changed files first. Does
/// nothing if WorkDir can't be entered.
void RepackAndExit(arcview& w);

/// Asks, and leaves all files in WorkDir.
void gogo(arcview& w);

/// Handles the window's close box: asks about changed files. Leaves the files in WorkDir, unless that is private to
/// this window and so of no use to anybody.
void close_archive_window(arcview& w);

/// Leaves after a book was read: deletes the files made for it that nobody has changed.
void close_book_archive(arcview& w);

/// Deletes the files that this window has made and nobody has changed, and leaves; stays where the user stops that.
void clear_away_and_leave(arcview& w);

}  // namespace quill::zip
