#include "decoder/yenc_text.h"

#include "text/reader.h"

#include <algorithm>

namespace quill::decoder {
namespace {

constexpr std::size_t piece_size = 128 * 1024;  // bytes of text taken on at a time

/// Appends `unix_text` with CR LF for each LF.
void append_adapted(std::string& out, std::string_view unix_text) {
    while (!unix_text.empty()) {
        const std::size_t line_end = unix_text.find('\n');
        out.append(unix_text.substr(0, line_end));
        if (line_end == std::string_view::npos) return;
        out.append("\r\n");
        unix_text.remove_prefix(line_end + 1);
    }
}

}  // namespace

AdaptedText::AdaptedText(std::string_view bytes, std::size_t start)
    : bytes_(bytes), unix_text_(text::is_unix_text(bytes)) {
    std::size_t in_adapted = 0;
    if (unix_text_) {
        while (taken_ < bytes.size() && in_adapted < start) in_adapted += bytes[taken_++] == '\n' ? 2U : 1U;
    } else {
        taken_ = std::min(start, bytes.size());
    }
    at_ = taken_;
    if (taken_ > 0) previous_ = static_cast<unsigned char>(bytes[taken_ - 1]);
    fill();
}

void AdaptedText::advance(std::size_t n) {
    if (n > 0) previous_ = static_cast<unsigned char>(piece()[n - 1]);
    if (unix_text_) {
        adapted_.erase(0, n);
    } else {
        at_ += n;
    }
    fill();
}

void AdaptedText::fill() {
    const std::string_view more = bytes_.substr(taken_, piece_size);
    if (unix_text_) append_adapted(adapted_, more);
    taken_ += more.size();
}

std::size_t AdaptedText::offset() const {
    if (!unix_text_) return at_;
    const auto added = static_cast<std::size_t>(std::count(adapted_.begin(), adapted_.end(), '\r'));
    return taken_ - (adapted_.size() - added);
}

}  // namespace quill::decoder
