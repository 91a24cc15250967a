#include "picture/bmp_runs.h"

#include "picture/fields.h"

#include <algorithm>

namespace quill::picture {
namespace {

/// Draws one run after another ("Bitmap Compression" of the Windows SDK).
class Runs {
  public:
    Runs(std::string_view data, const BmpHeader& header, QImage& image)
        : data_(data), header_(header), image_(image), is_rle4_(header.packing == BmpHeader::Packing::rle4) {}

    int draw() {
        while (row_ < image_.height() && at_ + 1 < data_.size()) {
            const unsigned count = take();
            const unsigned value = take();
            if (count > 0) {
                repeat(count, value);
            } else if (value > delta) {
                copy(value);
            } else if (value == end_of_picture) {
                return image_.height();
            } else {
                move(value == end_of_row);
            }
        }
        return std::min(row_, image_.height());
    }

  private:
    enum Escape : unsigned { end_of_row = 0, end_of_picture = 1, delta = 2 };

    unsigned take() { return byte_at(data_, at_++); }

    void move(bool is_row_end) {
        if (is_row_end) {
            x_ = 0;
            ++row_;
        } else {
            x_ += static_cast<int>(take());
            row_ += static_cast<int>(take());
        }
    }

    void repeat(unsigned count, unsigned value) {
        for (unsigned i = 0; i < count; ++i) put(is_rle4_ ? (i % 2 == 0 ? value >> 4U : value & 0xFU) : value);
    }

    /// Copies pixels; they are padded to an even offset.
    void copy(unsigned count) {
        const std::size_t begin = at_;
        for (unsigned i = 0; i < count; ++i) {
            const unsigned byte = byte_at(data_, begin + (is_rle4_ ? i / 2 : i));
            put(is_rle4_ ? (i % 2 == 0 ? byte >> 4U : byte & 0xFU) : byte);
        }
        const std::size_t bytes = is_rle4_ ? (count + 1) / 2 : count;
        at_ = begin + (bytes + 1) / 2 * 2;
    }

    void put(unsigned index) {
        if (x_ < image_.width() && row_ < image_.height()) {
            auto* const row = reinterpret_cast<QRgb*>(image_.scanLine(header_.row_of(row_)));
            row[x_] = index < header_.palette.size() ? header_.palette[index] : qRgb(0, 0, 0);
        }
        ++x_;
    }

    std::string_view data_;
    const BmpHeader& header_;
    QImage& image_;
    bool is_rle4_;
    std::size_t at_ = 0;
    int x_ = 0;
    int row_ = 0;
};

}  // namespace

int draw_runs(std::string_view data, const BmpHeader& header, QImage& image) {
    image.fill(header.palette.empty() ? qRgb(0, 0, 0) : header.palette[0]);
    const int rows = Runs(data, header, image).draw();
    for (int i = rows; i < image.height(); ++i) {
        std::fill_n(image.scanLine(header.row_of(i)), image.bytesPerLine(), uchar{0});
    }
    return rows;
}

}  // namespace quill::picture
