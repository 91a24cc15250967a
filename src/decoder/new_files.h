#pragma once

#include "codec/attachment.h"
#include "shell/main_window.h"

#include <cstddef>
#include <string>
#include <vector>

/// What a decoding run has made, found by comparing two listings of the input's directory: `File2` before the run,
/// `File3` after it.
namespace quill::decoder {

enum class Change : std::uint8_t {
    fewer_files,  ///< more files vanished than appeared
    none,         ///< as many as before, whatever their names
    more_files
};

struct NewFiles {
    Change change = Change::none;
    std::vector<std::string> names;  ///< those of `File3` that `File2` lacks, in list order; only with more_files
};

/// Refreshes `File3` (twice where it has become shorter) and compares it with `File2`, which stays as it is.
NewFiles find_new_files(shell::swit& w);

/// Adds the files `names` of the input's directory to the results in `List3` and opens the results panel; the progress
/// bar goes. Does nothing for none.
void show_results(shell::swit& w, const std::vector<std::string>& names);

/// Renames each result whose name begins "snapshot-f" (in any case, and goes on) and does not end in "jpg": a number
/// from 1 and ".jpg" are appended, the first for which no file with any content exists. The row follows even where the
/// renaming fails. Names are relative to the current directory.
void rename_snapshots(shell::swit& w);

}  // namespace quill::decoder
