#pragma once

#include "zip/archive_window.h"

#include <string>

/// The character set of names that do not say which one they are in.
namespace quill::zip {

/// The caption of an item of the menu Names: 0 for the set that fits best, others as in `character_sets`.
std::string caption_of_names(int number);

/// Reads the names in another character set, and shows them. Files that were made for the members and that nobody has
/// seen yet get the names, too.
void choose_names(arcview& w, int number);

}  // namespace quill::zip
