#pragma once

#include <string>
#include <string_view>

namespace quill::codec {

/// `bytes` in the character set `charset` (its MIME name, in any case) as UTF-8. Bytes that the set leaves undefined
/// become U+FFFD. Where the system does not know the set, or none is named: as UTF-8 where valid, else Windows-1252.
std::string to_utf8(std::string_view bytes, std::string_view charset);

}  // namespace quill::codec
