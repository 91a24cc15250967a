#pragma once

#include <string_view>

/// The characters of the formats that write six bits as one character, in the order of their values 0 to 63.
namespace quill::codec {

/// RFC 4648 4.
inline constexpr std::string_view base64_characters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// BinHex 4.0 definition, "hqx".
inline constexpr std::string_view binhex_characters =
    "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr";

/// POSIX uuencode, historical algorithm, with '`' for 0; readers accept ' ' for 0 too.
inline constexpr std::string_view uu_characters = "`!\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_";

/// xxencode.
inline constexpr std::string_view xx_characters = "+-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

static_assert(base64_characters.size() == 64 && binhex_characters.size() == 64);
static_assert(uu_characters.size() == 64 && xx_characters.size() == 64);

}  // namespace quill::codec
