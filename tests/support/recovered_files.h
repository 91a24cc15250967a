#pragma once

#include "codec/recovery/recover.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace quill::tests {

/// One result of a decoding: its name and bytes, and its verdict and problems.
struct RecoveredFile {
    std::string name;
    std::string bytes;
    codec::Outcome outcome;
    std::vector<std::string> sources;

    bool is_trusted() const { return outcome.verdict <= codec::Verdict::whole; }
};

/// Texts by their file names.
using Inputs = std::vector<std::pair<std::string, std::string>>;

/// Decodes `inputs` in one run like the programs, without message texts, resource forks and plain parts.
std::vector<RecoveredFile> recovered_files(std::span<const Inputs::value_type> inputs);

}  // namespace quill::tests
