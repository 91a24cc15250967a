#pragma once

#include "zip/archive_window.h"

#include <string>

/// The character set of names that do not indicate theirs.
namespace quill::zip {

/// Returns the caption of an item of the menu Names: 0 for the best fit, others as in `character_sets`.
std::string caption_of_names(int number);

/// Reads the names in another character set, and shows them. Renames files made for the members that nobody has seen
/// yet.
void choose_names(arcview& w, int number);

}  // namespace quill::zip
