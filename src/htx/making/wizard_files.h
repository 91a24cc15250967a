#pragma once

#include "archive/changing/new_archive.h"
#include "shell/main_window.h"
#include "shell/session.h"

#include <optional>
#include <string>
#include <vector>

/// The files that the create wizard puts into an archive.
namespace quill::htx {

/// Returns a member for each row of the wizard's lists. `keep_paths`: called as its path, without what makes that
/// absolute; else by its name alone, or, for files below the directory that they were chosen in, their path from there.
std::vector<zip::NewMember> wizard_members(const shell::swit& window, bool keep_paths);

/// Returns a name that two members of different files have; nullopt where there is none.
std::optional<std::string> name_of_two(const std::vector<zip::NewMember>& members);

/// Gives the later ones of members of one name numbers: "a (2).txt". The same file twice stays one.
void keep_all_names(std::vector<zip::NewMember>& members);

/// Returns index.r29 with the book's window as a member, and writes it into the directory of the first file, unless a
/// file of that name is something else.
zip::NewMember write_geometry(const shell::Session& session, shell::swit& window);

/// Names the files that a new archive lacks, and why; nothing where it has them all.
void report_left_out(platform::Platform& platform, const std::vector<zip::MemberFailure>& failures);

}  // namespace quill::htx
