#pragma once

#include "codec/input/line_cursor.h"

namespace quill::codec {

/// Returns the position of the line end before `at`, or `at` if there is none.
Position before_line_end(const LineCursor& cursor, Position at);

/// Returns true if the line at `at` follows an empty line, or is the first.
bool is_behind_blank(const LineCursor& cursor, Position at);

/// Returns the beginning of the line before `at` if it is a rule between articles: one sign, repeated; else `at`.
Position before_rule(const LineCursor& cursor, Position at);

/// Returns true if `line` begins a message in an mbox file (RFC 4155): "From ", and a header field on the next line.
/// Without an empty line before it, it must also contain a time, and without a field that messages have, a date.
bool is_separator(const LineCursor& cursor, const Line& line);

}  // namespace quill::codec
