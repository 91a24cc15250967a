#pragma once

#include "archive/library/library.h"
#include "platform/platform.h"

#include <string>
#include <vector>

/// Additions to an open archive, and their names.
namespace quill::zip {

struct Additions {
    std::vector<ZipItem> items;
    std::vector<std::string> left_out;  ///< entries that can't be added, a line each
};

/// Collects the entries at `paths`: files, links as links, directories with all their contents. Leaves out other kinds,
/// unreadable entries, and the archive itself at `archive`.
Additions collect_additions(const std::vector<std::string>& paths, const std::string& archive);

/// Asks about each item whose name another item or a member of `opened` has (nullptr: an archive without members):
/// whether it replaces that one or gets a free name. Returns false if the user wants no addition.
bool settle_names(platform::Platform& platform, const OpenedArchive* opened, std::vector<ZipItem>& items);

/// Reports in one box what is left out, if anything.
void report_left_out(platform::Platform& platform, const Additions& additions);

}  // namespace quill::zip
