#pragma once

#include <optional>
#include <string_view>

namespace quill::codec {

/// Returns the value of a hexadecimal digit, upper or lower case, or -1.
constexpr int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

/// Returns the byte that the first two characters of `s` spell.
constexpr std::optional<unsigned char> hex_byte(std::string_view s) {
    if (s.size() < 2 || hex_value(s[0]) < 0 || hex_value(s[1]) < 0) return std::nullopt;
    return static_cast<unsigned char>(hex_value(s[0]) * 16 + hex_value(s[1]));
}

}  // namespace quill::codec
