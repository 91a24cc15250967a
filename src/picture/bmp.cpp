#include "picture/bmp.h"

#include "picture/bmp_header.h"
#include "picture/bmp_runs.h"
#include "picture/fields.h"

#include <algorithm>
#include <bit>
#include <vector>

namespace quill::picture {
namespace {

/// Extracts one channel from a pixel, scaled to 8 bits.
class Channel {
  public:
    explicit Channel(std::uint32_t mask)
        : mask_(mask), shift_(mask == 0 ? 0 : static_cast<unsigned>(std::countr_zero(mask))), most_(mask >> shift_) {}

    bool is_there() const { return mask_ != 0; }
    int operator()(std::uint32_t pixel) const {
        if (mask_ == 0) return 0;
        const std::uint64_t value = (pixel & mask_) >> shift_;
        if (most_ > 255) return static_cast<int>(value >> (static_cast<unsigned>(std::bit_width(most_)) - 8));
        return static_cast<int>((value * 255 + most_ / 2) / most_);
    }

  private:
    std::uint32_t mask_;
    unsigned shift_;
    std::uint64_t most_;
};

/// Turns rows of the file into rows of colors.
class Rows {
  public:
    explicit Rows(const BmpHeader& header)
        : bits_(header.bits),
          palette_(header.palette),
          red_(header.masks[0]),
          green_(header.masks[1]),
          blue_(header.masks[2]),
          alpha_(header.masks[3]) {}

    void draw(std::string_view row, QRgb* out, int width) const {
        for (int x = 0; x < width; ++x) out[x] = color(row, static_cast<std::size_t>(x));
    }

  private:
    QRgb color(std::string_view row, std::size_t x) const {
        switch (bits_) {
            case 16:
                return masked(word_at(row, 2 * x));
            case 24:
                return qRgb(byte_at(row, 3 * x + 2), byte_at(row, 3 * x + 1), byte_at(row, 3 * x));
            case 32:
                return masked(long_at(row, 4 * x));
            default:
                return mapped(row, x);
        }
    }

    QRgb mapped(std::string_view row, std::size_t x) const {
        const std::size_t bit = x * bits_;
        const unsigned index = byte_at(row, bit / 8) >> (8 - bits_ - bit % 8) & ((1U << bits_) - 1);
        return index < palette_.size() ? palette_[index] : qRgb(0, 0, 0);
    }

    QRgb masked(std::uint32_t pixel) const {
        const int alpha = alpha_.is_there() ? alpha_(pixel) : 255;
        return qPremultiply(qRgba(red_(pixel), green_(pixel), blue_(pixel), alpha));
    }

    unsigned bits_;
    const std::vector<QRgb>& palette_;
    Channel red_, green_, blue_, alpha_;
};

/// Draws rows until the data end; returns their number.
int draw_plain(std::string_view data, const BmpHeader& header, QImage& image) {
    const Rows rows(header);
    const std::size_t stride = header.row_bytes();
    const std::size_t used = (static_cast<std::size_t>(header.size.width()) * header.bits + 7) / 8;
    int done = 0;
    for (; done < header.size.height(); ++done) {
        const std::string_view row = part_at(data, stride * static_cast<std::size_t>(done), used);
        if (row.size() < used) break;
        rows.draw(row, reinterpret_cast<QRgb*>(image.scanLine(header.row_of(done))), header.size.width());
    }
    return done;
}

}  // namespace

bool is_bmp(std::string_view file) {
    return file.starts_with("BM") && read_bmp_header(file).has_value();
}

Drawn draw_bmp(std::string_view file, qint64 most_pixels) {
    Drawn drawn;
    const std::optional<BmpHeader> header = read_bmp_header(file);
    if (!header) return drawn;
    drawn.original = header->size;
    if (!has_pixels(header->size, most_pixels)) return drawn;
    drawn.image = QImage(header->size, QImage::Format_ARGB32_Premultiplied);
    if (drawn.image.isNull()) return drawn;
    drawn.image.fill(0);
    const std::string_view data = part_at(file, header->data_at);
    count_rows(drawn,
               header->is_packed() ? draw_runs(data, *header, drawn.image) : draw_plain(data, *header, drawn.image));
    return drawn;
}

}  // namespace quill::picture
