#pragma once

#include "codec/attachment.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quill::shell {

/// What is known of a file in the results list, beside its name.
struct ResultRow {
    std::string name;                            ///< bare file name, the same as the list's text
    std::uint64_t size = 0;                      ///< bytes
    std::optional<codec::Format> format = {};    ///< what it was encoded as, where a decoder said so
    std::optional<codec::Verdict> verdict = {};  ///< absent where no decoder spoke for the file
    std::vector<codec::Problem> problems = {};

    bool operator==(const ResultRow&) const = default;
};

}  // namespace quill::shell
