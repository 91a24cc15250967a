#pragma once

#include "decoder/results.h"
#include "shell/session.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The actions on the files in the results list. All names in it are bare; the directories are kept beside them.
namespace quill::decoder {

/// Fills the actions of the results panel's list and buttons, and the route that checks the current file.
void connect_results_panel(shell::Context& context);

/// Opens the selected file with the desktop's default program for its type; never runs it. Asks first about types that
/// can contain commands or scripts. A GIF or JPEG picture whose name lacks its ending gets that ending first, and a
/// number if the name is taken. An empty or missing file leads to the repair guide.
void open_result(shell::Context& context);

/// Shows the pictures among the files in the viewer, as one set.
void show_result_pictures(shell::Context& context);

/// Asks for a new name and renames the selected file. Refuses a name that is taken, or that contains a slash, with a
/// message and leaves the list unchanged.
void rename_result(shell::Context& context);

/// Asks, then deletes the selected file and removes it from the list.
void erase_result(shell::Context& context);

/// Offers to check the selected file for viruses.
void check_result(shell::Context& context);

/// Explains misnamed files.
void explain_results(shell::Context& context);

/// What a view shows of a row besides the name.
struct RowDetails {
    std::string size;                   ///< "12,345 bytes"; "gone" if the file does not exist
    std::string_view icon;              ///< name of the icon of its type (freedesktop.org icon naming)
    bool picture = false;               ///< a picture, judged by its first bytes, suitable for a preview
    std::string verdict;                ///< "verified", "damaged" ...; empty if unknown
    bool doubtful = false;              ///< the file is damaged, incomplete, empty, gone or disguised, or harmful
    bool disguised = false;             ///< a program disguised as another type of file
    std::vector<std::string> problems;  ///< one sentence each, the most important for people first
};

/// Reads the first bytes of the row's file and returns its details. REQUIRES: row < List3.count().
RowDetails row_details(const shell::swit& w, std::size_t row);

}  // namespace quill::decoder
