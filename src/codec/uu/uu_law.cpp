#include "codec/uu/uu_law.h"

#include <algorithm>

namespace quill::codec::uu {
namespace {

constexpr std::size_t sampled = std::size_t{64} << 10;

/// Returns the place where `zero` is written between other characters of a row.
std::size_t find_inner(std::string_view rows, char zero) {
    for (std::size_t at = rows.find(zero); at != rows.npos; at = rows.find(zero, at)) {
        const std::size_t next = rows.find_first_not_of(zero, at);
        if (next == rows.npos || rows[next] > ' ') return next == rows.npos ? next : at;
        at = next;
    }
    return rows.npos;
}

}  // namespace

void Law::take_width(std::size_t bytes) {
    uneven_ = uneven_ || odd_;
    if (width_ == 0) width_ = bytes;
    uneven_ = uneven_ || bytes > width_;
    odd_ = odd_ || bytes != width_;
}

bool Law::allow(std::size_t bytes, bool last) const {
    const std::size_t width = width_ == 0 ? full_line : width_;
    return !odd_ && (bytes == width || (last && bytes < width));
}

unsigned Law::sum_of(std::string_view row, std::size_t bytes) const {
    unsigned sum = 0;
    for (const char c : row.substr(1, characters_for(bytes))) sum += static_cast<unsigned>(value_of(alphabet_, c));
    return sum % 64;
}

void Law::take_exact(std::string_view row, std::size_t bytes, std::uint64_t at, bool blanks_after) {
    take_width(bytes);
    if (blanks_after) padded_.add(at);
    const bool may_be_lost = has_checks() && sum_of(row, bytes) == 0;
    last_is_plain_ = !may_be_lost;
    (!may_be_lost ? plain_ : blanks_after ? right_ : zero_).add(at);
}

void Law::take_more(std::uint64_t rows, std::uint64_t at) {
    if (rows == 0) return;
    plain_.add(at, rows);
    last_is_plain_ = true;
}

void Law::take_longer(std::string_view row, const DataLine& data, std::uint64_t at) {
    std::string_view surplus = row.substr(1 + data.expected);
    surplus = surplus.substr(0, surplus.find_last_not_of(blanks) + 1);
    take_width(data.bytes);
    last_is_plain_ = false;
    if (!has_checks()) surplus_ = surplus;
    if (surplus != surplus_) changed_.add(at);
    const bool right =
        surplus.size() == 1 && value_of(alphabet_, surplus.front()) == static_cast<int>(sum_of(row, data.bytes));
    (right ? right_ : wrong_).add(at);
}

void Law::take_zeros(std::string_view rows, std::uint64_t at) {
    if (alphabet_ == Alphabet::xx) return;
    rows = rows.substr(0, sampled);
    if (rows.find('`') != rows.npos) keep_blanks();
    if (rows.find(" \n") != rows.npos || rows.find(" \r") != rows.npos) keep_blanks();
    if (graves_.rows == 0) {
        if (const std::size_t grave = find_inner(rows, '`'); grave != rows.npos) graves_.add(at + grave);
    }
    if (blanks_.rows == 0) {
        if (const std::size_t blank = find_inner(rows, ' '); blank != rows.npos) blanks_.add(at + blank);
    }
}

std::optional<std::uint64_t> Law::wrong_check() const {
    if (!has_checks()) {
        const bool doubled = writes_blanks() && padded_.rows > 0 && padded_.rows < plain_.rows - padded_.rows;
        return doubled ? std::optional(padded_.first) : std::nullopt;
    }
    const std::uint64_t lost_zeros = keeps_blanks_ ? zero_.rows : 0;
    if (right_.rows > wrong_.rows) {
        if (wrong_.rows > 0) return wrong_.first;
        if (plain_.rows > 0 && plain_.rows <= right_.rows) return plain_.first;
        if (plain_.rows > 0) return right_.first;
        return lost_zeros > 0 ? std::optional(zero_.first) : std::nullopt;
    }
    if (wrong_.rows == 1 && right_.rows == 0 && plain_.rows == 0) return wrong_.first;
    if (changed_.rows > 0) return changed_.first;
    const std::uint64_t allowed = last_is_plain_ && odd_ ? 1 : 0;
    if (plain_.rows + lost_zeros <= allowed) return std::nullopt;
    return plain_.rows > wrong_.rows ? wrong_.first : plain_.first;
}

std::optional<std::uint64_t> Law::wrongly_stripped() const {
    return keeps_blanks_ && stripped_.rows > 0 ? std::optional(stripped_.first) : std::nullopt;
}

std::optional<std::uint64_t> Law::mixed_zeros() const {
    if (graves_.rows == 0 || blanks_.rows == 0) return std::nullopt;
    return std::max(graves_.first, blanks_.first);
}

}  // namespace quill::codec::uu
