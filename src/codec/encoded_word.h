#pragma once

#include <string>
#include <string_view>

namespace quill::codec {

/// `value` with its encoded words (RFC 2047 2) decoded to UTF-8, wherever they stand: within quotes too, touching other
/// text, and with blanks inside. Blanks between two words vanish, and a character may be cut between them. What is no
/// word, or is encoded wrongly, stays as it is.
std::string decode_words(std::string_view value);

}  // namespace quill::codec
