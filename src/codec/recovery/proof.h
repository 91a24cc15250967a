#pragma once

#include "report/problem.h"

#include <cstdint>

/// What a verdict rests on.
namespace quill::codec {

/// How the rows of a body were read. Formats without rows of one length leave all at 0.
struct RowCounts {
    std::uint64_t lawful = 0;    ///< as the encoder wrote them
    std::uint64_t repaired = 0;  ///< in the one way that makes them lawful
    std::uint64_t suspect = 0;   ///< decoded as far as they go

    bool operator==(const RowCounts&) const = default;
};

/// Whether the rows are alike, as one encoder writes them.
enum class BodyLaw : std::uint8_t {
    none,  ///< the format has no law, or the body too few rows to show one
    kept,
    broken
};

/// Whether what the text states of the result is so.
enum class Claim : std::uint8_t { none, agrees, differs };

/// All that was seen of one result: what is proved of it, and what speaks against it.
struct Proof {
    bool begin = true;  ///< its beginning was seen
    bool end = true;    ///< its end was seen
    BodyLaw law = BodyLaw::none;
    RowCounts rows = {};
    std::uint64_t gaps = 0;     ///< places where bytes are missing
    std::uint64_t foreign = 0;  ///< rows of other text inside the data
    std::uint64_t doubts = 0;   ///< what else may have been read wrongly: copies that differ, ends in doubt
    Claim size = Claim::none;
    Claim checksum = Claim::none;

    bool operator==(const Proof&) const = default;
};

/// Adds what `problem` takes away from the proof. A settled problem counts as a repair.
void count(Proof& proof, const report::Problem& problem);

/// Adds a problem of `kind` of which nothing else was kept.
void count(Proof& proof, report::ProblemKind kind);

/// Decides by a table, the first row of which that applies.
report::Verdict verdict(const Proof& proof);

}  // namespace quill::codec
