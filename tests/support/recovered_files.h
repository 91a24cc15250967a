#pragma once

#include "codec/recovery/recover.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace quill::tests {

/// What came out of one decoding: the name and bytes of a result, and what is said of them.
struct RecoveredFile {
    std::string name;
    std::string bytes;
    codec::Outcome outcome;
    std::vector<std::string> sources;

    bool is_trusted() const { return outcome.verdict <= codec::Verdict::whole; }
};

/// Texts by their file names.
using Inputs = std::vector<std::pair<std::string, std::string>>;

/// Decodes `inputs` in one run as the programs do: message texts, resource forks and plain parts left out.
std::vector<RecoveredFile> recovered_files(std::span<const Inputs::value_type> inputs);

}  // namespace quill::tests
