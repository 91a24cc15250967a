#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What was found wrong with an input, and how far a result can be trusted. Shared by the decoder and the archive
/// engine.
namespace quill::report {

/// What is known of a result.
enum class Verdict : std::uint8_t {
    verified,   ///< A checksum or a stated size agrees.
    whole,      ///< Its structure is complete, but there is no checksum for the bytes.
    damaged,    ///< Bytes in it are known to be wrong, lost, or doubtful.
    incomplete  ///< Its end, its beginning or a part is missing.
};

/// "verified", "whole", "damaged", "incomplete".
std::string_view name_of(Verdict verdict);

/// How much a problem takes away from the result.
enum class Grade : std::uint8_t {
    repaired,  ///< Odd input that was understood; the bytes are not in doubt.
    damaged,   ///< Bytes of the result are or may be wrong.
    lost       ///< Bytes are missing from the result.
};

/// Something that was not as it should be.
struct Problem {
    Grade grade = Grade::damaged;
    std::string kind;            ///< a short fixed word for programs: "missing-end", "bad-crc", "bad-character" ...
    std::uint64_t at_input = 0;  ///< byte offset in the input
    std::optional<std::uint64_t> at_output = {};  ///< byte offset in the result, where there is one
    std::string text;                             ///< for people: one sentence without a full stop
    std::optional<std::uint32_t> source = {};     ///< the input that `at_input` is in; empty where it is the only one

    bool operator==(const Problem&) const = default;
};

}  // namespace quill::report
