#pragma once

#include "decoder/text_facts.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quill::decoder {

/// What a file that could not be decoded most likely is.
enum class Likely : std::uint8_t {
    empty,             ///< It has no bytes.
    known_file,        ///< It begins as a file of a known type does: it is decoded already.
    wide_text,         ///< Text saved with two bytes a character (UTF-16).
    binary,            ///< Bytes that no text has.
    encrypted,         ///< A message for a key that only its reader has.
    damaged_encoding,  ///< An encoded file is announced, but what follows could not be read.
    one_long_line,     ///< Rows with `<BR>` between them in place of line ends.
    quoted_printable,  ///< Quoted-printable text.
    headless_uu,       ///< Rows of UUE without their begin line.
    headless_base64,   ///< Even rows of Base64 without a header.
    plain_text         ///< Text in which nothing is encoded.
};

/// The kind that `bytes`, of which `facts` are known, most likely are.
Likely likely_kind(std::string_view bytes, const TextFacts& facts);

/// What the program itself sees in a file that it could not decode, for a person: why it could not go on, what to
/// try next, what was looked for, and what was seen (line lengths, first lines, characters outside the alphabets).
/// Plain sentences in paragraphs, lines ended by '\n'. Looks at the first 16 MiB of `bytes`.
std::string diagnosis_text(std::string_view bytes);

}  // namespace quill::decoder
