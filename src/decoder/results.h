#pragma once

#include "codec/attachment.h"
#include "shell/main_window.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quill::decoder {

/// A row of the results list with what is known of its file.
struct ResultRow {
    std::string name;
    std::string path = {};                       ///< where its file is, or was
    std::optional<std::uint64_t> size = {};      ///< bytes it has on the disk now; absent where it is gone
    std::optional<codec::Verdict> verdict = {};  ///< absent where no decoder checked the file
    std::vector<codec::Problem> problems = {};
    std::optional<shell::ScanAnswer> scan = {};  ///< absent where no check is known of the file as it is now
    std::string scan_text = {};

    bool operator==(const ResultRow&) const = default;
};

/// Row `row` of `List3`. REQUIRES: row < List3.count().
ResultRow result_row(const shell::swit& w, std::size_t row);

/// The path of the row's file, in the directory that it was made in, under the name that it has there: the row may be
/// written in other capitals. REQUIRES: row < List3.count().
std::string result_path(const shell::swit& w, std::size_t row);

/// A file that a run has made.
struct NewResult {
    std::string name;
    std::optional<codec::Outcome> outcome = {};
};

/// Adds the files `found` in `directory` to the results, selects the first of them, and wakes up the buttons that need
/// a row. A row that names the same file is used again: what was known of the file is forgotten. Does nothing for none.
void add_results(shell::swit& w, const std::string& directory, std::vector<NewResult> found);

/// Gives row `row`, and what is known of its file, the name `name`. Renames no file. Removes another row that names the
/// same file: that file cannot be there any more.
void replace_result(shell::swit& w, std::size_t row, const std::string& name);

/// Keeps what an anti-virus program said of the file at `path` in the rows of that file. What it found stays there
/// until a check of the same bytes gives another answer.
void keep_scan(shell::swit& w, const std::string& path, const shell::Scan& scan);

/// Removes row `row` and what is known of its file. Deletes no file.
void remove_result(shell::swit& w, std::size_t row);

}  // namespace quill::decoder
