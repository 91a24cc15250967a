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
    std::optional<codec::Verdict> verdict = {};  ///< absent where no decoder spoke for the file
    std::vector<codec::Problem> problems = {};

    bool operator==(const ResultRow&) const = default;
};

/// Row `row` of `List3`. REQUIRES: row < List3.count().
ResultRow result_row(const shell::swit& w, std::size_t row);

/// The path of the row's file, in the directory that it was made in, under the name that it has there: the row may be
/// written in other capitals. REQUIRES: row < List3.count().
std::string result_path(const shell::swit& w, std::size_t row);

/// Adds the file `name` in `directory` to the results; where a row is of that very file, that one serves.
void add_result(shell::swit& w, const std::string& directory, const std::string& name);

/// Gives row `row`, and what is known of its file, the name `name`. Renames no file. Another row that was of a file of
/// that name, which cannot be there any more, goes.
void replace_result(shell::swit& w, std::size_t row, const std::string& name);

/// Takes row `row` and what is known of its file away. Deletes no file.
void remove_result(shell::swit& w, std::size_t row);

}  // namespace quill::decoder
