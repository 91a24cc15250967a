#pragma once

#include "codec/input/line_cursor.h"
#include "codec/mail/mime_header.h"

#include <functional>

namespace quill::codec {

/// Returns true for a line that ends the current reading: a boundary, the beginning of the next message.
using IsStop = std::function<bool(const Line&)>;

/// A header as read.
struct HeaderBlock {
    ContentHeader header;
    unsigned fields = 0;         ///< lines that began a field
    bool separated = false;      ///< an empty line ended it
    bool cut = false;            ///< a field is longer than the stored part
    bool double_spaced = false;  ///< an empty line followed each line
};

/// Reads a header from the cursor's position through the empty line after it (RFC 5322 2.2). If that line is missing,
/// the header ends before the first line that cannot belong to it, or before a stop line. Joins folded lines without a
/// leading blank if the line before them requires more.
HeaderBlock read_header(LineCursor& cursor, const IsStop& is_stop);

/// Returns true if `line` looks like the first line of a message's header: a field that messages have.
bool begins_message_header(std::string_view line);

/// Returns true if two more header lines, with an empty line after each, follow the empty line that ends at `at`.
bool goes_on_double_spaced(const LineCursor& cursor, Position at);

}  // namespace quill::codec
