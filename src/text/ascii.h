#pragma once

#include <string>
#include <string_view>

/// Tests and changes of 8-bit text that know only the letters A to Z and no locale. Bytes 128 to 255 pass unchanged.
namespace quill::text {

constexpr char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

std::string to_lower(std::string_view s);

bool equal_ignoring_case(std::string_view a, std::string_view b);
bool starts_with_ignoring_case(std::string_view s, std::string_view prefix);
bool ends_with_ignoring_case(std::string_view s, std::string_view suffix);

/// Returns the last `n` characters of `s`, or all of it if it is shorter.
constexpr std::string_view last(std::string_view s, std::size_t n) {
    return s.size() <= n ? s : s.substr(s.size() - n);
}

/// Returns `s` without the blanks and tabs at its ends.
std::string_view trim(std::string_view s);

}  // namespace quill::text
