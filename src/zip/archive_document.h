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

/// Runs one change of the archive, which `undo_change` can take back. `what` names it: "removal of letter.txt". Shows
/// the rows afterwards; a failure is reported. Returns whether the archive was changed.
bool make_change(arcview& w, const std::string& what, const std::function<std::int16_t()>& change);

/// Gives the archive the bytes that it had before the last change. Where that fails it can be tried again.
void undo_change(arcview& w);

/// `text` as a part of a caption, in which a single `&` would mark the letter of a key.
std::string as_caption(std::string_view text);

/// Name of the archive and what is not saved.
void show_title(arcview& w);

}  // namespace quill::zip
