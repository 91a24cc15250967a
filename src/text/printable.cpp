#include "text/printable.h"

#include "text/utf8.h"

namespace quill::text {

std::string printable(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
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
