#include "codec/input/lines.h"

#include <algorithm>

namespace quill::codec {

std::size_t count_line_ends_reference(std::string_view s) {
    return static_cast<std::size_t>(std::count_if(s.begin(), s.end(), [](char c) { return c == '\r' || c == '\n'; }));
}

std::size_t find_line_end_reference(std::string_view s, std::size_t from) {
    std::size_t at = from;
    while (at < s.size() && s[at] != '\r' && s[at] != '\n') ++at;
    return at < s.size() ? at : s.size();
}

std::size_t find_line_beginning_reference(std::string_view s, std::size_t from, std::string_view first_characters) {
    std::size_t at = from;
    while (at < s.size()) {
        at = find_line_end_reference(s, at);
        const std::string_view line_end = s.substr(at, 3);
        at += line_end == "\r\r\n" ? 3U : line_end.starts_with("\r\n") ? 2U : 1U;
        if (at >= s.size()) break;
        if (s[at] == '\r' || s[at] == '\n' || first_characters.find(s[at]) != std::string_view::npos) return at;
    }
    return s.size();
}

}  // namespace quill::codec
