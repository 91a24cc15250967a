#include "text/ascii.h"

#include <algorithm>

namespace quill::text {

std::string to_lower(std::string_view s) {
    std::string out(s);
    std::transform(out.begin(), out.end(), out.begin(), lower);
    return out;
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

bool starts_with_ignoring_case(std::string_view s, std::string_view prefix) {
    return s.size() >= prefix.size() && equal_ignoring_case(s.substr(0, prefix.size()), prefix);
}

bool ends_with_ignoring_case(std::string_view s, std::string_view suffix) {
    return s.size() >= suffix.size() && equal_ignoring_case(last(s, suffix.size()), suffix);
}

std::string_view trim(std::string_view s) {
    constexpr std::string_view blanks = " \t";
    const auto first = s.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(blanks) - first + 1);
}

}  // namespace quill::text
