#pragma once

#include "zip/archive_window.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

/// How an archive comes into its window, and its members into WorkDir.
namespace quill::zip {

/// Loads the window on SelectedDir/SelectedFile, extracts all members into WorkDir, and hides the main window. What is
/// not an archive, or can't be read, is reported and leaves the main window as it is.
///
/// A SelectedDir that begins with "?" means a new archive in the directory that follows; one with "+", the window near
/// the lower left corner of the screen. When WorkDir is the program's own, the archive gets a private directory in it.
void load_archive_window(shell::Context& context, NewZIP& archives);

/// Shows the path and the name of the archive.
void show_archive_path(arcview& w, const std::string& path);

/// Returns true where the members of `rows` may be extracted to `directory`: there is room, or the user wants as much
/// as there is room for.
bool has_room(arcview& w, const std::vector<std::size_t>& rows, const std::string& directory);

/// The directories that members are or lie in, below the one that they are extracted to.
std::set<std::string> member_directories(const OpenedArchive& opened);

/// Remembers which directories below WorkDir will be there only because of the archive.
void note_new_directories(arcview& w);

/// Extracts the members of `rows`. While members need another password, the user is asked for one. Returns
/// false, with the reason reported, where that fails as a whole.
bool unpack_rows(arcview& w, const std::vector<std::size_t>& rows);

/// Lists the archive again and extracts all of it: another program has changed it. Asks before about the files that
/// were changed: those that are saved go into the archive as it is now, the others stay as files. Changes nothing where
/// the user cancels, or the archive can't be read.
void reload_archive(arcview& w);

}  // namespace quill::zip
