#pragma once

#include "decoder/results.h"
#include "shell/session.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What can be done with the files in the results list. All names in it are bare; where the files lie is kept beside
/// them.
namespace quill::decoder {

/// Fills the actions of the results panel's list and buttons, and the route that checks the file in hand.
void connect_results_panel(shell::Context& context);

/// Opens the selected file with the desktop's default program for its type; never runs it. Asks first about types that
/// can carry commands or scripts. A GIF or JPEG picture whose name does not say so gets its ending first, and a number
/// where that name is taken. A file that is empty or gone leads to the repair guide.
void open_result(shell::Context& context);

/// Shows the pictures among the files in the viewer, as one set.
void show_result_pictures(shell::Context& context);

/// Asks for a new name and renames the selected file. A name that is taken, or holds a slash, is refused with a
/// message; the list then stays as it is.
void rename_result(shell::Context& context);

/// Asks, then deletes the selected file and takes it out of the list.
void erase_result(shell::Context& context);

/// Offers to have the selected file checked for viruses.
void check_result(shell::Context& context);

/// Explains misnamed files.
void explain_results(shell::Context& context);

/// What a view shows of a row beside the name.
struct RowDetails {
    std::string size;                   ///< "12,345 bytes"; "gone" where the file is not there
    std::string_view icon;              ///< name of the icon of its type (freedesktop.org icon naming)
    bool picture = false;               ///< a picture by its first bytes, fit for a preview
    std::string verdict;                ///< "verified", "damaged" ...; empty where nothing is known
    bool doubtful = false;              ///< the file is damaged, incomplete, empty, gone or disguised, or harmful
    bool disguised = false;             ///< a program whose name looks like that of something else
    std::vector<std::string> problems;  ///< one sentence each, those that people must hear of first
};

/// Reads the first bytes of the row's file. REQUIRES: row < List3.count().
RowDetails row_details(const shell::swit& w, std::size_t row);

}  // namespace quill::decoder
