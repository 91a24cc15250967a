#include "codec/base64/base64_rows.h"

#include "codec/input/lines.h"

namespace quill::codec {

/// Judges the row before, which now is one in the middle.
void Base64Rows::end_row() {
    if (row_ == 0) return;
    if (width_ == 0) width_ = row_;
    if (before_ == width_) {
        ++usual_rows_;
    } else if (before_ > 0) {
        if (odd_ == 0) odd_ = before_;
        ++odd_rows_;
        third_length_ = third_length_ || before_ != odd_;
    }
    before_ = row_;
    row_ = 0;
}

void Base64Rows::take(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const char c = bytes[at];
        if (c == '\n' || c == '\r') {
            end_row();
            ++at;
            continue;
        }
        const std::size_t expected = at + width_ - (row_ < width_ ? row_ : width_);
        const bool as_expected = expected > at && expected < bytes.size() && bytes[expected - 1] > ' ' &&
                                 (bytes[expected] == '\n' || bytes[expected] == '\r');
        const std::size_t end = as_expected ? expected : find_line_end(bytes, at);
        std::size_t last = end;
        while (last > at && (bytes[last - 1] == ' ' || bytes[last - 1] == '\t')) --last;
        row_ += last - at;
        at = end;
    }
}

void Base64Rows::end_padded() {
    end_row();
    before_ = 0;
}

bool Base64Rows::uneven() const {
    if (third_length_ || odd_rows_ == 1) return true;
    return usual_rows_ == 1 && odd_rows_ > 1;
}

}  // namespace quill::codec
