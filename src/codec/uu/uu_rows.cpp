#include "codec/uu/uu_rows.h"

#include <algorithm>

namespace quill::codec::uu {

void Rows::take_width(std::size_t bytes) {
    uneven_ = uneven_ || odd_;
    if (width_ == 0) width_ = bytes;
    odd_ = odd_ || bytes != width_;
}

bool Rows::allow(std::size_t bytes, bool last) const {
    const std::size_t width = width_ == 0 ? full_line : width_;
    return !odd_ && (bytes == width || (last && bytes < width));
}

unsigned Rows::sum_of(std::string_view line, std::size_t bytes) const {
    unsigned sum = 0;
    for (const char c : line.substr(1, characters_for(bytes))) sum += static_cast<unsigned>(value_of(alphabet_, c));
    return sum % 64;
}

void Rows::take_exact(std::string_view line, std::size_t bytes) {
    take_width(bytes);
    const bool may_be_lost = has_checks() && sum_of(line, bytes) == 0;
    last_is_plain_ = !may_be_lost;
    if (!may_be_lost) ++none_;
}

void Rows::take_more(std::uint64_t lines) {
    none_ += lines;
    last_is_plain_ = last_is_plain_ || lines > 0;
}

void Rows::take_longer(std::string_view line, const DataLine& data) {
    std::string_view rest = line.substr(1 + data.expected);
    rest = rest.substr(0, std::max<std::size_t>(rest.find_last_not_of(' ') + 1, 1));
    if (rest == " " && sum_of(line, data.bytes) != 0) return take_exact(line, data.bytes);
    take_width(data.bytes);
    last_is_plain_ = false;
    const bool right =
        rest.size() == 1 && value_of(alphabet_, rest.front()) == static_cast<int>(sum_of(line, data.bytes));
    (right ? right_ : wrong_)++;
}

bool Rows::checks_disagree() const {
    const bool last_alone = right_ + wrong_ == 1 && odd_ && !last_is_plain_;
    if (!has_checks() || last_alone) return false;
    if (right_ > wrong_ + none_) return wrong_ + none_ > 0;
    return none_ > (last_is_plain_ && odd_ ? 1U : 0U);
}

}  // namespace quill::codec::uu
