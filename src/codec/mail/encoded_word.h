#pragma once

#include <string>
#include <string_view>

namespace quill::codec {

/// Returns `value` as UTF-8 with its encoded words (RFC 2047 2) decoded, wherever they are: even in quotes, touching
/// other text, and with blanks inside. Blanks between two words vanish, and a character may be cut between them. Other
/// text and invalid words stay; if they are not UTF-8, their bytes are in `charset`, as far as known.
std::string decode_words(std::string_view value, std::string_view charset = {});

}  // namespace quill::codec
