#pragma once

#include "zip/archive_window.h"

#include <string>

/// Reading members of the open archive: extracting them to a directory of the user's choice, and testing them.
namespace quill::zip {

/// What is wrong with the archive as a whole, in sentences; empty where nothing is.
std::string archive_problems(const arcview& w);

/// Extracts the members that the panel asks for to its directory, never over a file that is there. Says what came of
/// it, and opens the directory where the panel asks for that.
void extract_files(arcview& w);

/// Reads all members and writes nothing. Each row then shows what was found; a box sums it up.
void test_archive(arcview& w);

}  // namespace quill::zip
