#pragma once

#include "codec/input/line_cursor.h"
#include "codec/mail/header_block.h"
#include "codec/mail/mime_header.h"

#include <cstddef>
#include <string_view>

/// Facts from headers and lines about their part of a message.
namespace quill::codec {

/// Returns true if `line` is a Content- field that messages have.
bool is_content_field(std::string_view line);

bool is_multipart(const ContentHeader& header);

/// Returns true for a message within a message, whose header follows at once.
bool is_nested_message(const ContentHeader& header);

/// Returns true for a message in quoted-printable whose boundaries are visible; they count after decoding.
bool shows_inner_boundaries(const ContentHeader& header);

/// Returns true if the header at `at` was not encoded in quoted-printable, which writes each "=" as "=3D".
bool is_plain_header(const LineCursor& cursor, Position at, const IsStop& is_stop);

/// Returns true if a header that describes the body after it begins at `line`: fields up to an empty line.
bool announces_content(const LineCursor& cursor, const Line& line);

/// Returns true if data ends at `line` because another article begins: at its header, which is two fields or more up to
/// an empty line, the first of them one that messages have; or at the signature ("-- ") of the article before it.
bool begins_article(const LineCursor& cursor, const Line& line);

/// Returns the beginning of the lines before `at` that are not rows of Base64, not even damaged ones; `at` if there are
/// none.
Position end_of_rows(const LineCursor& cursor, Position at);

/// Returns true if the row of Base64 before `at` shows that it is the last: it is padded, or shorter than `line_size`,
/// the length of the others, or than usual full rows.
bool ends_base64(const LineCursor& cursor, Position at, std::size_t line_size);

/// Returns true if the header announces a file in another format.
bool wraps_file(const ContentHeader& header);

}  // namespace quill::codec
