#pragma once

#include "zip/archive_window.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The archive as a document: the changes in it and around it, and undoing them.
namespace quill::zip {

/// Adopts the archive on the disk as the one that the rows show.
void take_archive(arcview& w);

/// Checks whether other programs have changed the files or the archive: shows it in the title and in the rows, and asks
/// what to do about the archive. With many members it checks only the opened files.
void notice_changes(arcview& w);

/// Runs one change of the archive, which `undo_change` can undo. `what` names it: "removal of letter.txt". Shows the
/// rows afterwards and reports a failure. Returns true if the archive was changed.
bool make_change(arcview& w, const std::string& what, const std::function<std::int16_t()>& change);

/// Restores the archive's bytes from before the last change. After a failure it can be tried again.
void undo_change(arcview& w);

/// Returns `text` escaped for a caption, in which a single `&` would mark the shortcut letter.
std::string as_caption(std::string_view text);

/// Shows the name of the archive and its unsaved changes.
void show_title(arcview& w);

}  // namespace quill::zip
