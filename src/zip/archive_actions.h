#pragma once

#include "zip/archive_window.h"

#include <string>
#include <vector>

/// The archive window's actions on its members.
namespace quill::zip {

/// Opens the selected members with their own programs, extracting them first if necessary. Programs are never run; an
/// archive opens in its own window.
void OpenMember(arcview& w);

/// Asks, and removes the selected members from the archive. Their files stay in WorkDir.
void RemoveMember(arcview& w);

/// Shows the file chooser and adds its selection to the archive.
void zippadd(arcview& w);

/// Shows the rows again after files were added.
void ziconize(arcview& w);

/// Adds the entries at `paths`: files, links as links, directories with all their contents. Reports what can't be
/// added. Asks if a name is taken.
void add_files(arcview& w, const std::vector<std::string>& paths);

/// Adds items that have member names; asks if one is taken.
void add_items(arcview& w, std::vector<ZipItem> items);

/// What of the selected members is handed to another program.
struct Handed {
    std::vector<std::string> paths;
    std::vector<std::size_t> without_file;  ///< rows
};

/// Hands the selected members' files out.
Handed files_to_hand_out(arcview& w);

/// Reports that these members had no file to hand out, and why.
void report_without_file(arcview& w, const std::vector<std::size_t>& rows);

/// Shows the pictures among the members as one set in the viewer.
void show_member_pictures(arcview& w);

}  // namespace quill::zip
