#pragma once

#include "codec/attachment.h"
#include "shell/main_window.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quill::decoder {

/// A row of the results list and the facts about its file.
struct ResultRow {
    std::string name;
    std::string path = {};                       ///< the path of its file, even if that is gone
    std::optional<std::uint64_t> size = {};      ///< bytes on the disk now; absent if the file is gone
    std::optional<codec::Verdict> verdict = {};  ///< absent if no decoder checked the file
    std::vector<codec::Problem> problems = {};
    std::optional<shell::ScanAnswer> scan = {};  ///< absent if no check of the file's current bytes is known
    std::string scan_text = {};

    bool operator==(const ResultRow&) const = default;
};

/// Returns row `row` of `List3`. REQUIRES: row < List3.count().
ResultRow result_row(const shell::swit& w, std::size_t row);

/// Returns the path of the row's file, in the directory that it was made in, under its name there: the row may be
/// written in other capitals. REQUIRES: row < List3.count().
std::string result_path(const shell::swit& w, std::size_t row);

/// A file made by a run.
struct NewResult {
    std::string name;
    std::optional<codec::Outcome> outcome = {};
};

/// Adds the files `found` in `directory` to the results as those of one run on the message `source`, selects the first
/// of them, and enables the buttons that need a row. Reuses a row that names the same file and drops what was known
/// about that file. Does nothing if `found` is empty.
void add_results(shell::swit& w, const std::string& directory, std::vector<NewResult> found,
                 const std::string& source = {});

/// Gives row `row` and its record the name `name`. Renames no file. Removes another row that names the same file: that
/// file cannot exist any more.
void replace_result(shell::swit& w, std::size_t row, const std::string& name);

/// Stores the answer of an anti-virus program about the file at `path` in the rows of that file. A find stays until a
/// check of the same bytes gives another answer.
void keep_scan(shell::swit& w, const std::string& path, const shell::Scan& scan);

/// Removes row `row` and its record. Deletes no file.
void remove_result(shell::swit& w, std::size_t row);

}  // namespace quill::decoder
