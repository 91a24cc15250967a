#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quill::codec::quoted_printable {

/// What a line holds that it should not.
enum class Doubt : unsigned char {
    none,
    bad_escape  ///< a '=' that neither two hexadecimal digits nor the line's end follow; it is kept as it stands
};

/// Decodes one line (RFC 2045 6.7), given with its line end, and appends it to `out`: "=41" becomes "A", blanks at the
/// line's end vanish, and a '=' there joins the next line. The line end itself is kept as it is.
Doubt decode_line(std::string_view line, std::string& out);

}  // namespace quill::codec::quoted_printable
