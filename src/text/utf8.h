#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The conversion of 8-bit text to Unicode, for display and for file names.
namespace quill::text {

/// Returns true if `s` is well-formed UTF-8 (RFC 3629: no surrogates, no overlong forms, nothing above U+10FFFF).
bool is_utf8(std::string_view s);

/// Returns the length in bytes of the well-formed character at the beginning of `s`; 0 if there is none. `s` is not
/// empty.
std::size_t character_length(std::string_view s);

/// Returns `s`, read as Windows-1252, as UTF-8. The five bytes that it leaves undefined become the C1 controls of their
/// value.
std::string windows_1252_to_utf8(std::string_view s);

/// Returns `s` itself if it is UTF-8. One character that was cut short, as by a limit on a name's length, becomes
/// U+FFFD if complete characters beyond ASCII indicate UTF-8. Everything else is read as Windows-1252.
std::string to_utf8(std::string_view s);

/// Removes the first character from `s`, which must be well-formed and not empty, and returns it.
char32_t next_character(std::string_view& s);

void append_utf8(std::string& out, char32_t character);

}  // namespace quill::text
