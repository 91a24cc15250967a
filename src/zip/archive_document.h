#pragma once

#include "zip/archive_window.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The archive as a document: what was changed in it and around it, and taking changes back.
namespace quill::zip {

/// Takes the archive as it is on the disk now for what the rows show.
void take_archive(arcview& w);

/// Looks whether other programs have changed the files or the archive: shows it in the title and in the rows, and asks
/// what to do about the archive. With many members it looks only at the files that were opened.
void notice_changes(arcview& w);

/// Asks about each file that another program has changed whether it goes into the archive, and saves those. Returns
/// false where the user wants to go on with the window, or a file could not be saved.
bool settle_changes(arcview& w);

/// Returns true where the archive is still what the rows show. Else asks whether to read it again or to go on with the
/// archive as it was, under a new name.
bool archive_is_ours(arcview& w);

/// Runs one change of the archive, which `undo_change` can take back. `what` names it: "removal of letter.txt". Shows
/// the rows afterwards; a failure is reported. Returns whether the archive was changed.
bool make_change(arcview& w, const std::string& what, const std::function<std::int16_t()>& change);

/// Gives the archive the bytes that it had before the last change. Where that fails it can be tried again.
void undo_change(arcview& w);

/// Saves the files of `rows` into the archive.
bool save_rows(arcview& w, const std::vector<std::size_t>& rows);

/// `text` as a part of a caption, in which a single `&` would mark the letter of a key.
std::string as_caption(std::string_view text);

/// Name of the archive and what is not saved.
void show_title(arcview& w);

}  // namespace quill::zip
