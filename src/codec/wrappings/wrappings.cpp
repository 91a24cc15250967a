#include "codec/wrappings/wrappings.h"

#include "codec/wrappings/rows.h"

#include <array>

namespace quill::codec {
namespace {

using enum report::ProblemKind;

constexpr std::array rows = {
    Wrapping{wide_text, wide_text, detect_utf16, unwrap_utf16},
    Wrapping{inner_mark, inner_mark, detect_utf8_marks, unwrap_utf8_marks},
    Wrapping{encoded_message, encoded_message, detect_emlx, unwrap_emlx},
    Wrapping{tagged_lines, tagged_text, detect_html, unwrap_html},
    Wrapping{escaped, escaped, detect_html_escapes, unwrap_html_escapes},
    Wrapping{encoded_message, encoded_message, detect_quoted_printable, unwrap_quoted_printable},
    Wrapping{quoted, quoted, detect_quotes, unwrap_quotes},
    Wrapping{indented, indented, detect_indents, unwrap_indents},
    Wrapping{numbered, numbered, detect_numbers, unwrap_numbers},
};

}  // namespace

std::span<const Wrapping> wrappings() {
    return rows;
}

}  // namespace quill::codec
