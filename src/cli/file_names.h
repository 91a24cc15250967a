#pragma once

#include "text/result.h"

#include <istream>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quill::cli {

/// The files that a command is to work on, as the user gave them.
struct FileNames {
    std::vector<std::string> files;  ///< paths
    std::string list;                ///< a file with more of them; "-" is standard input; empty: none
};

/// Adds FILE... and --files-from to `command`.
void add_file_names(CLI::App& command, FileNames& names, const std::string& about);

/// Returns all paths, those of the list last. List entries end at NUL if there is one, else at line ends; empty ones
/// are skipped. Fails with the system's reason if the list can't be read.
Result<std::vector<std::string>> all_names(const FileNames& names, std::istream& standard_input);

}  // namespace quill::cli
