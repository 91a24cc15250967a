#pragma once

#include "zip/archive_window.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

/// Loading of an archive into its window, and of its members into WorkDir.
namespace quill::zip {

/// Loads the window on SelectedDir/SelectedFile, extracts all members into WorkDir, and hides the main window. Reports
/// a file that is not an archive, or can't be read, and leaves the main window unchanged.
///
/// A SelectedDir that begins with "?" means a new archive in the directory that follows; one with "+", the window near
/// the lower left corner of the screen. If WorkDir is the program's own, the archive gets a private directory in it.
void load_archive_window(shell::Context& context, NewZIP& archives);

/// Shows the path and the name of the archive.
void show_archive_path(arcview& w, const std::string& path);

/// Returns true if the members of `rows` may be extracted to `directory`: there is room, or the user accepts what fits.
bool has_room(arcview& w, const std::vector<std::size_t>& rows, const std::string& directory);

/// Returns the directories that are or contain members, below the target directory.
std::set<std::string> member_directories(const OpenedArchive& opened);

/// Remembers which directories below WorkDir exist only because of the archive.
void note_new_directories(arcview& w);

/// Extracts the members of `rows`. Asks the user for passwords as long as members need another one. Returns false, with
/// the reason reported, if the extraction as a whole fails.
bool unpack_rows(arcview& w, const std::vector<std::size_t>& rows);

/// Lists the archive again and extracts all of it, after another program has changed it. First asks about the changed
/// files: saved ones go into the archive as it is now, the others stay as files. Changes nothing if the user cancels,
/// or the archive can't be read.
void reload_archive(arcview& w);

}  // namespace quill::zip
