#pragma once

#include "decoder/mime_wrap.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The second tries for a text in which the decoding library finds nothing: even lines, no trailing blanks, no head.
namespace quill::decoder {

/// Returns the length of a field that represents a line of the encoded body: of the third field after the first triple
/// whose third field is longer than 59 characters, or of the last field if the text ends earlier.
std::size_t sample_line_length(const text::Source& text);

/// Returns true if lines of this length must be re-wrapped.
bool is_odd_line_length(std::size_t length);

/// Copies the text with its header fields as lines, and the body after its first "Content-Dispos" and one more field in
/// lines of 76 characters: each field, with the rest of the previous one in front and without two blanks at its end,
/// gives one line.
void rewrap_body(const text::Source& text, const Sink& out);

/// The line that ends a head: an empty one, or one that begins with a byte above 128.
struct HeadEnd {
    std::uint64_t offset = 0;  ///< bytes up to the end of that line; its line end counts as two (in Unix text as one)
};

/// Copies the lines of `text`, without two blanks at their ends, up to the first line that ends a head, and returns
/// that line.
std::optional<HeadEnd> copy_lines(const text::Source& text, const Sink& out);

/// Returns the bytes of `text` from byte number `offset` (from 1). If 1000 bytes or fewer follow it, leaves out that
/// byte itself.
std::string_view tail_from(std::string_view text, std::uint64_t offset);

}  // namespace quill::decoder
