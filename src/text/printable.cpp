#include "text/printable.h"

#include "text/utf8.h"

#include <algorithm>

namespace quill::text {
namespace {

bool is_plain(char c) {
    return c >= ' ' && c <= '~';
}

}  // namespace

std::string printable(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const auto plain =
            static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), is_plain) - text.begin());
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty()) break;
        const std::size_t length = character_length(text);
        std::string_view rest = text;
        const bool shown = length != 0 && !is_display_control(next_character(rest));
        if (shown) {
            out += text.substr(0, length);
        } else {
            out += '?';
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return out;
}

}  // namespace quill::text
