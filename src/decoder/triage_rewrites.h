#pragma once

#include "decoder/mime_wrap.h"

#include <string_view>

/// What triage makes of a text that the decoding library would not read as it is. None of these holds more of the text
/// in memory than the field or line at hand.
namespace quill::decoder {

/// The lines of `text` without the last two characters of each; lines shorter than that are left out.
void drop_two_characters_a_line(const text::Source& text, const Sink& out);

/// The lines of `text`, each that ends in `<BR>` (in capitals) without it.
void drop_tags_at_line_ends(const text::Source& text, const Sink& out);

/// The fields of `text`, a line each, without those that begin "content-dispos" in any case.
void fields_without_dispositions(const text::Source& text, const Sink& out);

}  // namespace quill::decoder
