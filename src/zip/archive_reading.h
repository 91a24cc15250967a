#pragma once

#include "zip/archive_window.h"

#include <string>

/// Reading members of the open archive: extracting them to a chosen directory, and testing them.
namespace quill::zip {

/// Returns the problems of the archive as a whole, in sentences; empty if there are none.
std::string archive_problems(const arcview& w);

/// Extracts the panel's members to its directory, never over an existing file. Reports the result, and opens the
/// directory if the panel requests it.
void extract_files(arcview& w);

/// Reads all members and writes nothing. Each row then shows its result; a box summarises them.
void test_archive(arcview& w);

}  // namespace quill::zip
