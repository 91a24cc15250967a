#include "codec/base64/base64_rows.h"

#include "codec/input/lines.h"

#include <algorithm>

namespace quill::codec {
namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

/// Returns the bytes of a row of `width` characters with its line end if `bytes` begin with one; else 0.
std::size_t stride_of_rows(std::string_view bytes, std::size_t width) {
    const std::string_view end = bytes.substr(std::min(width, bytes.size()), 2);
    if (width == 0 || end.empty()) return 0;
    return end.front() == '\n' ? width + 1 : end == "\r\n" ? width + 2 : 0;
}

/// Returns how many rows at the beginning of `bytes` appear to have `width` characters, judging by their first, their
/// last and their line end.
std::uint64_t count_even_rows(std::string_view bytes, std::size_t width, std::size_t stride) {
    const char last = stride == width + 1 ? '\n' : '\r';
    const char* row = bytes.data();
    std::uint64_t rows = 0;
    for (const std::uint64_t most = bytes.size() / stride; rows < most; ++rows, row += stride) {
        if (row[stride - 1] != '\n' || row[width] != last || row[0] <= ' ' || row[width - 1] <= ' ') break;
    }
    return rows;
}

}  // namespace

/// Checks the previous row, now known to be in the middle.
void Base64Rows::end_row() {
    if (row_ == 0) return;
    if (width_ == 0) width_ = row_;
    if (before_ == width_) {
        ++usual_rows_;
        end_odd_rows();
    } else if (before_ > 0) {
        in_odd_rows_ += before_;
        if (odd_ == 0) odd_ = before_;
        ++odd_rows_;
        third_length_ = third_length_ || before_ != odd_;
    }
    before_ = row_;
    row_ = 0;
}

void Base64Rows::end_odd_rows() {
    lost_ = lost_ || (width_ > 0 && in_odd_rows_ % width_ != 0);
    in_odd_rows_ = 0;
}

/// Takes whole rows by their first and last characters alone, and falls back to a look at each character where these
/// then are not as many as there should be, as when a line end took the place of two of them.
void Base64Rows::take(std::string_view bytes, std::uint64_t characters) {
    const Base64Rows before = *this;
    if (take_rows(bytes, true) == characters) return;
    *this = before;
    take_rows(bytes, false);
}

/// Returns how many characters the rows have, not counting blanks.
std::uint64_t Base64Rows::take_rows(std::string_view bytes, bool by_stride) {
    std::uint64_t characters = 0;
    while (!bytes.empty()) {
        if (bytes.front() == '\n' || bytes.front() == '\r') {
            end_row();
            bytes.remove_prefix(1);
            continue;
        }
        const std::size_t stride = row_ == 0 && before_ == width_ ? stride_of_rows(bytes, width_) : 0;
        const std::uint64_t even = by_stride && stride > 0 ? count_even_rows(bytes, width_, stride) : 0;
        usual_rows_ += even;
        characters += even * width_;
        bytes.remove_prefix(even * stride);
        if (even > 0) continue;
        const std::size_t end = find_line_end(bytes, 0);
        characters += take_to_line_end(bytes.substr(0, end));
        bytes.remove_prefix(end);
    }
    return characters;
}

/// Returns how many characters `text` has, not counting blanks.
std::uint64_t Base64Rows::take_to_line_end(std::string_view text) {
    row_ += text.find_last_not_of(" \t") + 1;
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), is_blank));
}

void Base64Rows::end_padded() {
    end_row();
    before_ = 0;
    end_odd_rows();
}

bool Base64Rows::uneven() const {
    if (usual_rows_ == 1 && odd_rows_ == 0 && before_ > width_) return true;
    const bool broken_again = usual_rows_ > 0 && !lost_ && in_odd_rows_ % width_ == 0;
    if (broken_again) return false;
    if (third_length_ || odd_rows_ == 1) return true;
    return usual_rows_ == 1 && odd_rows_ > 1;
}

}  // namespace quill::codec
