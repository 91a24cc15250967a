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
    std::optional<std::uint64_t> size = {};      ///< bytes it has on the disk now; absent where it is gone
    std::optional<codec::Verdict> verdict = {};  ///< absent where no decoder spoke for the file
    std::vector<codec::Problem> problems = {};

    bool operator==(const ResultRow&) const = default;
};

/// Row `row` of `List3`; names are relative to the current directory. REQUIRES: row < List3.count().
ResultRow result_row(const shell::swit& w, std::size_t row);

/// Gives row `row`, and what is known of its file, the name `name`. Renames no file.
void replace_result(shell::swit& w, std::size_t row, const std::string& name);

/// Takes row `row` and what is known of its file away. Deletes no file.
void remove_result(shell::swit& w, std::size_t row);

}  // namespace quill::decoder
