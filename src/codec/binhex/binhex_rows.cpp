#include "codec/binhex/binhex_rows.h"

#include "codec/input/lines.h"

#include <algorithm>

namespace quill::codec::binhex {
namespace {

constexpr std::uint64_t full_row = 64;

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

}  // namespace

void Rows::end_row() {
    if (row_ == full_row) {
        if (full_rows_ == 0) phase_ = before_;
        uneven_ = uneven_ || before_ != phase_;
        ++full_rows_;
    }
    before_ = (before_ + row_) % full_row;
    row_ = 0;
}

void Rows::take(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::string_view row = bytes.substr(0, find_line_end(bytes, 0));
        row_ += row.size() - static_cast<std::uint64_t>(std::count_if(row.begin(), row.end(), is_blank));
        bytes.remove_prefix(row.size());
        if (bytes.empty()) return;
        end_row();
        bytes.remove_prefix(1);
    }
}

}  // namespace quill::codec::binhex
