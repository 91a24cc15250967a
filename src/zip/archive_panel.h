#pragma once

#include "zip/archive_window.h"

#include <string>

/// The panel beside the list: a directory to move files to, or to extract members to.
namespace quill::zip {

/// Shows the panel that moves files to another directory, initially all of them.
void mover(arcview& w);

/// Does the same for the files of the selected members.
void choose_move(arcview& w);

/// Shows the panel that extracts members, all of them or the selected ones. Proposes the selected ones if `selected` is
/// set, or if several are selected.
void choose_extraction(arcview& w, bool selected = false);

/// Shows how many rows are selected, and proposes a new directory if those to extract have several names at the top.
void count_selected(arcview& w);

/// Enters a directory of the panel.
void show_panel_directory(arcview& w, const std::string& directory);

/// Asks for a name and makes a directory of that name, or with a number added, in the panel's directory.
void make_panel_directory(arcview& w);

/// Returns the panel's directory as an absolute path without a slash at its end.
std::string panel_directory(const arcview& w);

/// Returns the proposed name of the new directory for extracted files: the archive's without its ending.
std::string own_folder_name(const arcview& w);

/// Returns the rows for the panel to extract or move.
std::vector<std::size_t> panel_rows(const arcview& w);

}  // namespace quill::zip
