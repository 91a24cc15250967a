#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quill::decoder {

/// A line that announces something: its kind, place and text.
struct Marker {
    enum class Kind : std::uint8_t {
        uu_begin,          ///< begin 644 name
        base64_begin,      ///< begin-base64 644 name
        yenc_begin,        ///< =ybegin
        binhex_begin,      ///< (This file must be converted with BinHex ...
        base64_header,     ///< Content-Transfer-Encoding: base64
        uu_header,         ///< Content-Transfer-Encoding: x-uuencode
        quoted_printable,  ///< Content-Transfer-Encoding: quoted-printable
        encrypted          ///< -----BEGIN PGP MESSAGE-----, application/pkcs7-mime
    };

    Kind kind = Kind::uu_begin;
    std::uint64_t line = 0;  ///< from 1
    std::string text;        ///< safe to show
};

/// Facts seen in a text without decoding anything.
struct TextFacts {
    std::uint64_t size = 0;       ///< bytes of the whole text
    std::uint64_t looked_at = 0;  ///< bytes that the other fields describe

    std::uint64_t lines = 0;
    std::uint64_t empty_lines = 0;
    std::uint64_t usual_length = 0;  ///< the most frequent length of the lines that are not empty
    std::uint64_t usual_count = 0;   ///< how many have it
    std::uint64_t shortest = 0;      ///< of the lines that are not empty
    std::uint64_t longest = 0;
    std::uint64_t lone_line_feeds = 0;     ///< LF that does not end a line, because other lines end in CR
    std::vector<std::string> first_lines;  ///< the first lines that are not empty, cut and safe to show

    std::uint64_t characters = 0;      ///< without blanks, tabs and line ends; the counts below refer to these
    std::uint64_t outside_base64 = 0;  ///< RFC 2045 6.8, with '='
    std::uint64_t outside_uu = 0;      ///< '!' to '`'
    std::uint64_t outside_xx = 0;
    std::uint64_t outside_binhex = 0;  ///< BinHex 4.0, with ':'
    std::uint64_t control = 0;         ///< below 32, and 127
    std::uint64_t eight_bit = 0;       ///< above 127

    std::uint64_t break_tags = 0;     ///< `<BR>` in capitals
    std::uint64_t escapes = 0;        ///< `=` and two hexadecimal digits
    std::uint64_t equals = 0;         ///< `=` of all kinds
    std::uint64_t soft_breaks = 0;    ///< lines that end in `=` (quoted-printable)
    std::uint64_t full_uu_lines = 0;  ///< lines of 61 or 62 characters that begin with `M`
    std::vector<Marker> markers;      ///< the first of each kind, in text order
};

constexpr std::size_t most_bytes_looked_at = std::size_t{16} << 20;

/// Examines the first 16 MiB of `bytes`.
TextFacts look_at(std::string_view bytes);

/// Returns `line` as displayed in one row: at most 60 characters, with '.' for those that can't be shown.
std::string shown(std::string_view line);

}  // namespace quill::decoder
