#pragma once

#include "codec/input/line_cursor.h"
#include "codec/mail/mime_header.h"

#include <functional>

namespace quill::codec {

/// Tells a line that ends what is being read: a boundary, the beginning of the next message.
using IsStop = std::function<bool(const Line&)>;

/// A header as read.
struct HeaderBlock {
    ContentHeader header;
    unsigned fields = 0;         ///< lines that began a field
    bool separated = false;      ///< an empty line ended it
    bool cut = false;            ///< a field is longer than is kept of one
    bool double_spaced = false;  ///< an empty line stood behind each line
};

/// Reads a header from the cursor's position up to and with the empty line behind it (RFC 5322 2.2). Where that line is
/// missing the header ends before the first line that cannot be of it, or before a stop line. Lines that are folded
/// without a blank at the beginning are joined where the line before them asks for more.
HeaderBlock read_header(LineCursor& cursor, const IsStop& is_stop);

/// Whether `line` looks like the first line of a message's header: a field that messages have.
bool begins_message_header(std::string_view line);

/// Whether, behind an empty line that ends at `at`, two further header lines follow with an empty line behind each.
bool goes_on_double_spaced(const LineCursor& cursor, Position at);

}  // namespace quill::codec
