#include "text/reader.h"

#include <algorithm>

namespace quill::text {

bool is_unix_text(std::string_view bytes) {
    return bytes.find('\r') == std::string_view::npos && bytes.find('\n') != std::string_view::npos;
}

/// Returns the first `c` in [from, to), else `to`.
std::size_t Reader::find(char c, std::size_t from, std::size_t to) const {
    constexpr std::size_t step = std::size_t{1} << 20;
    while (to - from > step) {
        const std::size_t at = bytes_.substr(from, step).find(c);
        if (at != std::string_view::npos) return from + at;
        from += step;
        if (on_searched_) on_searched_(from);
    }
    return from + std::min(bytes_.substr(from, to - from).find(c), to - from);
}

std::size_t Reader::find_line_end(std::size_t from) {
    if (from >= line_known_to_) line_known_to_ = find(line_feed_ends_ ? '\n' : '\r', from, bytes_.size()) + 1;
    return line_known_to_ - 1;
}

std::size_t Reader::find_delimiter(std::size_t from) {
    return find(',', from, find_line_end(from));
}

void Reader::pass_delimiter(std::size_t at) {
    if (at == bytes_.size()) {
        at_ = at;
        return;
    }
    const bool crlf = bytes_[at] == '\r' && at + 1 < bytes_.size() && bytes_[at + 1] == '\n';
    at_ = at + (crlf ? 2 : 1);
}

std::optional<std::string_view> Reader::line() {
    if (at_end()) return std::nullopt;
    const std::size_t begin = at_;
    const std::size_t end = find_line_end(begin);
    pass_delimiter(end);
    return bytes_.substr(begin, end - begin);
}

std::optional<std::string_view> Reader::field() {
    if (at_end()) return std::nullopt;
    std::size_t begin = std::min(bytes_.find_first_not_of(" \t", at_), bytes_.size());
    if (begin < bytes_.size() && bytes_[begin] == '"') {
        ++begin;
        const std::size_t close = find('"', begin, bytes_.size());
        pass_delimiter(find_delimiter(close));
        return bytes_.substr(begin, close - begin);
    }
    const std::size_t end = find_delimiter(begin);
    pass_delimiter(end);
    return bytes_.substr(begin, end - begin);
}

}  // namespace quill::text
