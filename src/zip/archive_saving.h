#pragma once

#include "zip/archive_window.h"

#include <cstddef>
#include <optional>
#include <vector>

/// Files that other programs have changed, and how they go into the archive.
namespace quill::zip {

/// Asks about each of the `changed` rows whether its file goes into the archive. Returns those that do; nullopt where
/// the user cancels.
std::optional<std::vector<std::size_t>> ask_about_changes(arcview& w, const std::vector<std::size_t>& changed);

/// Asks about each file that another program has changed whether it goes into the archive, and saves those. Returns
/// false where the user wants to go on with the window, or a file could not be saved.
bool settle_changes(arcview& w);

/// Does the same for the files of `rows` alone.
bool settle_changes(arcview& w, const std::vector<std::size_t>& rows);

/// Saves the files of `rows` into the archive.
bool save_rows(arcview& w, const std::vector<std::size_t>& rows);

/// Saves the changed files of the selected members into the archive. One that replaces a damaged member is asked about.
void SaveChangedFile(arcview& w);

}  // namespace quill::zip
