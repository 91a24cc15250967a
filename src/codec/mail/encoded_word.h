#pragma once

#include <string>
#include <string_view>

namespace quill::codec {

/// Returns `value` as UTF-8 with its encoded words (RFC 2047 2) decoded, wherever they are: within quotes too, touching
/// other text, and with blanks inside. Blanks between two words vanish, and a character may be cut between them. What
/// is not a word, or is encoded wrongly, stays; where it is not UTF-8, its bytes are in `charset`, as far as known.
std::string decode_words(std::string_view value, std::string_view charset = {});

}  // namespace quill::codec
