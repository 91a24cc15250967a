#pragma once

#include <string>
#include <string_view>

namespace quill::codec {

/// Returns `bytes` in the character set `charset` (its MIME name, in any case) as UTF-8. Undefined bytes become U+FFFD.
/// If the system does not know the set, or none is named: as UTF-8 if valid, else Windows-1252.
std::string to_utf8(std::string_view bytes, std::string_view charset);

}  // namespace quill::codec
