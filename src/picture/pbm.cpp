#include "picture/pbm.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace quill::picture {
namespace {

constexpr std::string_view spaces = " \t\r\n\v\f";

/// Splits the text into words; comments run from # to the end of the line.
class Words {
  public:
    explicit Words(std::string_view text) : text_(text) {}

    /// Moves to the next character that is not space; returns false at the end.
    bool skip_space() {
        for (;;) {
            at_ = std::min(text_.find_first_not_of(spaces, at_), text_.size());
            if (at_ == text_.size()) return false;
            if (text_[at_] != '#') return true;
            at_ = std::min(text_.find('\n', at_), text_.size());
        }
    }

    int number() {
        int value = 0;
        if (!skip_space()) return 0;
        const auto [end, error] = std::from_chars(text_.data() + at_, text_.data() + text_.size(), value);
        at_ = static_cast<std::size_t>(end - text_.data());
        return error == std::errc() ? value : 0;
    }

    /// Returns the next digit's color; nullopt if there is none.
    std::optional<QRgb> pixel() {
        if (!skip_space() || (text_[at_] != '0' && text_[at_] != '1')) return std::nullopt;
        return text_[at_++] == '1' ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
    }

  private:
    std::string_view text_;
    std::size_t at_ = 0;
};

bool draw_row(Words& words, QRgb* out, int width) {
    for (int x = 0; x < width; ++x) {
        const std::optional<QRgb> pixel = words.pixel();
        if (!pixel) {
            std::fill_n(out, width, 0U);
            return false;
        }
        out[x] = *pixel;
    }
    return true;
}

}  // namespace

bool is_plain_pbm(std::string_view file) {
    return file.size() > 2 && file.starts_with("P1") &&
           (spaces.find(file[2]) != std::string_view::npos || file[2] == '#');
}

Drawn draw_plain_pbm(std::string_view file, qint64 most_pixels) {
    Words words(file.substr(2));
    const int width = words.number();
    Drawn drawn;
    drawn.original = {width, words.number()};
    if (!has_pixels(drawn.original, most_pixels)) return drawn;
    drawn.image = QImage(drawn.original, QImage::Format_ARGB32_Premultiplied);
    if (drawn.image.isNull()) return drawn;
    drawn.image.fill(0);
    int done = 0;
    while (done < drawn.original.height() &&
           draw_row(words, reinterpret_cast<QRgb*>(drawn.image.scanLine(done)), width)) {
        ++done;
    }
    count_rows(drawn, done);
    return drawn;
}

}  // namespace quill::picture
