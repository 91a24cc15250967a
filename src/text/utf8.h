#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Where 8-bit text becomes Unicode: at the view, and in file names.
namespace quill::text {

/// Whether `s` is well-formed UTF-8 (RFC 3629: no surrogates, no overlong forms, nothing above U+10FFFF).
bool is_utf8(std::string_view s);

/// Returns the bytes of the well-formed character that `s` begins with; 0 where it begins with none. `s` is not empty.
std::size_t character_length(std::string_view s);

/// `s` read as Windows-1252, written as UTF-8. The five bytes that it leaves undefined become the C1 controls of their
/// value.
std::string windows_1252_to_utf8(std::string_view s);

/// Returns `s` itself where it is UTF-8. One character that was cut short, as by a limit of a name's length, becomes
/// U+FFFD where whole characters beyond ASCII speak for UTF-8. All else is read as Windows-1252.
std::string to_utf8(std::string_view s);

/// Takes the first character off `s`, which must be well-formed and not empty.
char32_t next_character(std::string_view& s);

void append_utf8(std::string& out, char32_t character);

}  // namespace quill::text
