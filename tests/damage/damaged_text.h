#pragma once

#include "support/mutations.h"
#include "support/posts.h"
#include "support/recovered_files.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quill::tests {

/// A text with known contents and the changes made to it, all from seeds.
struct DamagedText {
    const Writing* writing = nullptr;
    const Container* container = nullptr;
    std::uint64_t seed = 0;                                            ///< of the contents
    std::vector<std::pair<const Mutation*, std::uint64_t>> mutations;  ///< each with its seed, in order
};

/// How a decoding of a damaged text compares with the truth.
enum class Score : std::uint8_t {
    exact,         ///< the right bytes, called whole or verified
    accused,       ///< the right bytes, called damaged or incomplete although nothing was lost
    doubted,       ///< the right bytes, called damaged or incomplete, and something was lost
    said,          ///< wrong bytes, called damaged or incomplete
    undetectable,  ///< wrong bytes called whole, which nothing in the text contradicts
    none,          ///< nothing was recovered
    silent,        ///< nothing was recovered of one file and nothing reported about it
    false_whole    ///< wrong bytes called whole or verified, which the text contradicts
};

inline constexpr std::array<std::string_view, 8> score_names = {"exact",        "accused", "doubted", "said",
                                                                "undetectable", "none",    "silent",  "FALSE"};

DamagedText damaged_text(std::uint64_t seed);

/// The text and its files.
struct BuiltText {
    std::string bytes;
    std::vector<std::string> originals;
    std::vector<std::string> honest;  ///< other valid readings of the text
    bool lost = false;                ///< bytes of the files are missing or changed
};
BuiltText build(const DamagedText& text);

Score score(const DamagedText& text);

/// Drops mutations that do not affect the score.
DamagedText minimal(DamagedText text);

/// Returns the kind of format and the first change, "uu: row-lost".
std::string class_of(const DamagedText& text);

}  // namespace quill::tests
