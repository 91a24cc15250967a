#pragma once

#include <string_view>

/// How quoted-printable text is known where no header announces it.
namespace quill::qpunwrap {

/// Whether the '=' of `text` speak for quoted-printable (RFC 2045 6.7) more than against it.
///
/// For it speak escapes of what an encoder must escape ('=' itself, bytes above 127, a blank at a line's end) and lines
/// that end in '='; where a quarter of all lines do so at full length, they decide alone. Against it speak all other
/// '=': those without two hexadecimal digits, those that would spell a letter or a digit, and those of a query in an
/// address (`?id=12&x=FA`). Padding at the end of a line of Base64 is neither, and a block of header lines at the
/// beginning is left out.
bool holds_quoted_printable(std::string_view text);

}  // namespace quill::qpunwrap
