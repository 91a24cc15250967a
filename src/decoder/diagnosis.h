#pragma once

#include "decoder/text_facts.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::decoder {

/// The most likely kind of a file that could not be decoded.
enum class Likely : std::uint8_t {
    empty,             ///< It has no bytes.
    known_file,        ///< It begins like a file of a known type: it is already decoded.
    wide_text,         ///< Text saved with two bytes a character (UTF-16).
    binary,            ///< Bytes that do not occur in text.
    encrypted,         ///< A message that needs its recipient's key.
    damaged_encoding,  ///< An encoded file is announced, but what follows could not be read.
    one_long_line,     ///< Rows separated by `<BR>` instead of line ends.
    quoted_printable,  ///< Quoted-printable text.
    headless_uu,       ///< Rows of UUE without their begin line.
    headless_base64,   ///< Even rows of Base64 without a header.
    plain_text         ///< Text without anything encoded.
};

/// Returns the most likely kind of `bytes`, given their `facts`.
Likely likely_kind(std::string_view bytes, const TextFacts& facts);

/// Returns an explanation, for people, of a file that could not be decoded: why decoding failed, what to try next, what
/// was searched for, and what was seen (line lengths, first lines, characters outside the alphabets). Plain sentences
/// in paragraphs, lines ended by '
/// '. Examines the first 16 MiB of `bytes`.
std::string diagnosis_text(std::string_view bytes);

}  // namespace quill::decoder
