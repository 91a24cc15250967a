#pragma once

#include "decoder/mime_wrap.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What is tried on a text that the decoding library could make nothing of: its lines brought to an even length, its
/// trailing blanks dropped, its head cut off.
namespace quill::decoder {

/// The length of a field that is taken for a line of the encoded body: of the third field behind the first triple
/// whose third field is longer than 59 characters, or of the last field where the text ends before.
std::size_t sample_line_length(const text::Source& text);

/// Whether lines of this length are to be re-wrapped.
bool is_odd_line_length(std::size_t length);

/// The text with its header fields as lines and the body behind its first "Content-Dispos" and one more field brought
/// to lines of 76 characters: each field, what the one before left over in front of it and two blanks at its end
/// dropped, gives one line.
void rewrap_body(const text::Source& text, const Sink& out);

/// A line that ends a head: an empty one, or one that begins with a byte above 128.
struct HeadEnd {
    std::uint64_t offset = 0;  ///< bytes up to the end of that line, its line end counted as two (in Unix text as one)
};

/// The lines of `text`, without two blanks at their ends, up to the first line that ends a head; that line is told.
std::optional<HeadEnd> copy_lines(const text::Source& text, const Sink& out);

/// The bytes of `text` from byte number `offset` (from 1) on. Where 1000 bytes or fewer follow it, that byte itself is
/// left out.
std::string_view tail_from(std::string_view text, std::uint64_t offset);

}  // namespace quill::decoder
