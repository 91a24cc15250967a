#pragma once

#include "report/problem_kind.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The problems found in an input, and how far a result can be trusted. Shared by the decoder and the archive engine.
namespace quill::report {

/// The state of a result, from best to worst.
enum class Verdict : std::uint8_t {
    verified,    ///< A checksum, an authentication code or a stated size agrees.
    whole,       ///< Its structure is complete, but nothing states its correct bytes.
    damaged,     ///< Bytes in it are known to be wrong, lost, or doubtful.
    incomplete,  ///< Its end, its beginning or a part is missing.
    refused      ///< Nothing was written: a problem says why.
};

/// Returns "verified", "whole", "damaged", "incomplete" or "refused".
std::string_view name_of(Verdict verdict);

/// A deviation from what the format requires.
struct Problem {
    ProblemKind kind = ProblemKind::bad_character;
    std::uint64_t at_input = 0;                   ///< byte offset in the input
    std::optional<std::uint64_t> at_output = {};  ///< byte offset in the result, if there is one
    std::string text = {};                        ///< set if it says more than the sentence of the kind
    std::optional<std::uint32_t> source = {};     ///< the input that `at_input` refers to; empty if it is the only one
    bool settled = false;                         ///< a size or a checksum shows that it did no harm

    bool operator==(const Problem&) const = default;
};

/// Returns the fixed word for the problem's kind: "missing-end", "bad-crc", "bad-character" ...
std::string_view word_of(const Problem& problem);

/// Returns the grade of the problem's kind, or `repaired` if the problem is settled.
Grade grade_of(const Problem& problem);

/// Returns one sentence for people, without a full stop.
std::string_view text_of(const Problem& problem);

/// Returns true if people must see the problem: bytes of the result are wrong, doubtful or missing, or the input was
/// understood but part of it was left out or the sender's own check was useless. Other repaired problems are for
/// programs that ask for all of them.
bool is_for_people(const Problem& problem);

/// Settles the problem if `evidence` is enough for its kind.
void settle(Problem& problem, Evidence evidence);

}  // namespace quill::report
