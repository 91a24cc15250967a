#pragma once

#include "archive/changing/new_archive.h"
#include "shell/main_window.h"
#include "shell/session.h"

#include <optional>
#include <string>
#include <vector>

/// The files that the create wizard adds to an archive.
namespace quill::htx {

/// Returns a member for each row of the wizard's lists. With `keep_paths` its name is its path without the parts that
/// make it absolute; else only its name, or, for files below a chosen directory, their path from there.
std::vector<zip::NewMember> wizard_members(const shell::swit& window, bool keep_paths);

/// Returns a name shared by two members of different files; nullopt if there is none.
std::optional<std::string> name_of_two(const std::vector<zip::NewMember>& members);

/// Numbers later members with the same name: "a (2).txt". The same file twice stays one.
void keep_all_names(std::vector<zip::NewMember>& members);

/// Returns index.r29 with the book's window as a member, and writes it into the directory of the first file, unless a
/// different kind of file of that name is there.
zip::NewMember write_geometry(const shell::Session& session, shell::swit& window);

/// Reports the files missing from a new archive, and why; nothing if it has them all.
void report_left_out(platform::Platform& platform, const std::vector<zip::MemberFailure>& failures);

}  // namespace quill::htx
