#pragma once

#include "codec/input/line_cursor.h"
#include "codec/mail/header_block.h"
#include "codec/mail/mime_header.h"

#include <cstddef>
#include <string_view>

/// What headers and lines say of the part of a message that they belong to.
namespace quill::codec {

/// Returns true where `line` is a Content- field that messages have.
bool is_content_field(std::string_view line);

bool is_multipart(const ContentHeader& header);

/// Returns true for a message within a message, whose header follows at once.
bool is_nested_message(const ContentHeader& header);

/// Returns true for a message in quoted-printable, which shows its boundaries; they count once it is decoded.
bool shows_inner_boundaries(const ContentHeader& header);

/// Returns true where the header at `at` was never put in quoted-printable, which has each of its "=" as "=3D".
bool is_plain_header(const LineCursor& cursor, Position at, const IsStop& is_stop);

/// Returns true where a header begins at `line` that says what the body after it is: fields up to an empty line.
bool announces_content(const LineCursor& cursor, const Line& line);

/// Returns true where data ends at `line` because another article begins: at its header, which is two fields or more up
/// to an empty line, the first of them one that messages have; or at the signature ("-- ") of the article before it.
bool begins_article(const LineCursor& cursor, const Line& line);

/// Returns where the lines before `at` begin that are not rows of Base64, not even damaged ones; `at` if there are
/// none.
Position end_of_rows(const LineCursor& cursor, Position at);

/// Returns true where the row of Base64 before `at` shows that it is the last: it is padded, or shorter than
/// `line_size`, the length of the others, or than encoders make full rows.
bool ends_base64(const LineCursor& cursor, Position at, std::size_t line_size);

/// Returns true where the header announces a file in another format.
bool wraps_file(const ContentHeader& header);

}  // namespace quill::codec
