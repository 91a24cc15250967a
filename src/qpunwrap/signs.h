#pragma once

#include <string_view>

/// Recognition of quoted-printable text without a header that announces it.
namespace quill::qpunwrap {

/// Returns true if the '=' of `text` support quoted-printable (RFC 2045 6.7) more than they contradict it.
///
/// Support comes from escapes of what an encoder must escape ('=' itself, bytes above 127, a blank at a line's end) and
/// from lines that end in '='; if a quarter of all lines do so at full length, they decide alone. All other '='
/// contradict it: those without two hexadecimal digits, those that would spell a letter or a digit, and those of a
/// query in an address (`?id=12&x=FA`). Padding at the end of a line of Base64 does not count, and a block of header
/// lines at the beginning is ignored.
bool holds_quoted_printable(std::string_view text);

}  // namespace quill::qpunwrap
