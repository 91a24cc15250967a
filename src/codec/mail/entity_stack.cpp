#include "codec/mail/entity_stack.h"

namespace quill::codec {

std::optional<EntityStack::Match> EntityStack::match(std::string_view line) const {
    if (!line.starts_with("--")) return std::nullopt;
    const std::size_t size = line.find_last_not_of(" \t") + 1;
    if (size < 3) return std::nullopt;
    const std::string_view text = line.substr(2, size - 2);
    std::optional<Match> loose;
    for (std::size_t i = levels.size(); i-- > 0;) {
        const std::string& boundary = levels[i].boundary;
        if (boundary.empty() || !text.starts_with(boundary)) continue;
        std::string_view behind = text.substr(boundary.size());
        const bool closing = behind.starts_with("--");
        if (closing) behind.remove_prefix(2);
        if (behind.empty()) return Match{i, closing};
        if (!loose && (behind.front() == ' ' || behind.front() == '\t')) loose = Match{i, closing};
    }
    return loose;
}

}  // namespace quill::codec
