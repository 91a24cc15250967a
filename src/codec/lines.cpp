#include "codec/lines.h"

namespace quill::codec {

std::size_t find_line_end_reference(std::string_view s, std::size_t from) {
    std::size_t at = from;
    while (at < s.size() && s[at] != '\r' && s[at] != '\n') ++at;
    return at < s.size() ? at : s.size();
}

}  // namespace quill::codec
