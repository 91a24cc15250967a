#pragma once

#include "zip/archive_window.h"

#include <cstddef>
#include <optional>
#include <vector>

/// Files that other programs have changed, and saving them into the archive.
namespace quill::zip {

/// Asks about each of the `changed` rows whether to save its file into the archive. Returns those to save; nullopt if
/// the user cancels.
std::optional<std::vector<std::size_t>> ask_about_changes(arcview& w, const std::vector<std::size_t>& changed);

/// Asks about each file that another program has changed whether to save it into the archive, and saves those. Returns
/// false if the user wants to keep the window open, or a file could not be saved.
bool settle_changes(arcview& w);

/// Does the same for only the files of `rows`.
bool settle_changes(arcview& w, const std::vector<std::size_t>& rows);

/// Saves the files of `rows` into the archive.
bool save_rows(arcview& w, const std::vector<std::size_t>& rows);

/// Saves the changed files of the selected members into the archive. Asks about a file that replaces a damaged member.
void SaveChangedFile(arcview& w);

}  // namespace quill::zip
