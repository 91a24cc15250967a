#include "picture/tga.h"

#include "picture/fields.h"
#include "picture/icon.h"

#include <algorithm>
#include <vector>

namespace quill::picture {
namespace {

constexpr std::size_t header_size = 18;
constexpr unsigned packed_bit = 8;
constexpr unsigned from_the_right = 0x10, from_the_top = 0x20, interleaved = 0xC0;

enum Kind : unsigned { mapped = 1, colored = 2, grey = 3 };

/// The fields of the header (TGA 2.0, "TGA file header").
struct Header {
    std::size_t id_size = 0;
    unsigned map_type = 0;
    unsigned type = 0;  ///< a Kind, with `packed_bit`
    unsigned first_color = 0;
    unsigned colors = 0;
    unsigned color_bits = 0;
    QSize size = {};
    unsigned bits = 0;  ///< of a pixel
    unsigned descriptor = 0;

    unsigned kind() const { return type & ~packed_bit; }
    unsigned alpha_bits() const { return descriptor & 0xFU; }
    std::size_t pixel_bytes() const { return (bits + 7) / 8; }
    std::size_t map_bytes() const { return map_type == 1 ? std::size_t{colors} * ((color_bits + 7) / 8) : 0; }
};

Header read_header(std::string_view file) {
    return {byte_at(file, 0),
            byte_at(file, 1),
            byte_at(file, 2),
            word_at(file, 3),
            word_at(file, 5),
            byte_at(file, 7),
            {word_at(file, 12), word_at(file, 14)},
            byte_at(file, 16),
            byte_at(file, 17)};
}

bool is_color_depth(unsigned bits) {
    return bits == 15 || bits == 16 || bits == 24 || bits == 32;
}

bool makes_sense(const Header& header) {
    if (header.map_type > 1 || header.size.isEmpty() || (header.descriptor & interleaved) != 0) return false;
    if (header.alpha_bits() > 8 || (header.map_type == 1 && !is_color_depth(header.color_bits))) return false;
    if (header.type != header.kind() && header.type != (header.kind() | packed_bit)) return false;
    switch (header.kind()) {
        case mapped:
            return header.map_type == 1 && header.colors > 0 && (header.bits == 8 || header.bits == 16);
        case colored:
            return is_color_depth(header.bits);
        case grey:
            return header.bits == 8 || header.bits == 16;
        default:
            return false;
    }
}

int of_five_bits(unsigned value) {
    return static_cast<int>((value & 0x1FU) * 255 / 31);
}

/// Returns a color of 15 to 32 bits. The attribute bit of 16 bits is not alpha: many writers leave it at 0.
QRgb color_of(std::string_view bytes, unsigned bits, bool has_alpha) {
    const std::uint32_t value = word_at(bytes, 0);
    if (bits <= 16) return qRgb(of_five_bits(value >> 10U), of_five_bits(value >> 5U), of_five_bits(value));
    const int alpha = has_alpha && bits == 32 ? byte_at(bytes, 3) : 255;
    return qRgba(byte_at(bytes, 2), byte_at(bytes, 1), byte_at(bytes, 0), alpha);
}

std::vector<QRgb> read_map(std::string_view file, const Header& header) {
    const std::size_t each = (header.color_bits + 7) / 8;
    std::vector<QRgb> colors(header.first_color, qRgb(0, 0, 0));
    for (std::size_t i = 0; header.map_type == 1 && i < header.colors; ++i) {
        colors.push_back(color_of(part_at(file, header_size + header.id_size + i * each), header.color_bits, true));
    }
    return colors;
}

/// Returns the bytes of one pixel after another.
class PixelBytes {
  public:
    PixelBytes(std::string_view data, const Header& header)
        : data_(data), each_(header.pixel_bytes()), packed_((header.type & packed_bit) != 0) {}

    /// Returns the next pixel's bytes; empty at the end of the data.
    std::string_view next() {
        if (packed_ && left_ == 0) begin_run();
        const std::string_view pixel = data_.substr(at_, each_);
        if (pixel.size() < each_) return {};
        if (packed_) --left_;
        if (!packed_ || !repeats_ || left_ == 0) at_ += each_;
        return pixel;
    }

  private:
    /// Runs continue across the ends of rows.
    void begin_run() {
        constexpr unsigned repeat_bit = 0x80;
        const unsigned head = byte_at(data_, at_);
        at_ = std::min(at_ + 1, data_.size());
        repeats_ = (head & repeat_bit) != 0;
        left_ = (head & ~repeat_bit) + 1;
    }

    std::string_view data_;
    std::size_t at_ = 0;
    std::size_t each_;
    bool packed_;
    bool repeats_ = false;
    unsigned left_ = 0;  ///< remaining pixels of the run
};

/// Converts the bytes of a pixel to its color.
class Colors {
  public:
    Colors(std::string_view file, const Header& header, bool has_alpha)
        : kind_(header.kind()), bits_(header.bits), has_alpha_(has_alpha) {
        if (kind_ == mapped) map_ = read_map(file, header);
    }

    QRgb operator()(std::string_view pixel) const {
        if (kind_ == colored) return color_of(pixel, bits_, has_alpha_);
        const std::size_t value = bits_ == 8 ? byte_at(pixel, 0) : word_at(pixel, 0);
        if (kind_ == mapped) return value < map_.size() ? map_[value] : qRgb(0, 0, 0);
        const int level = byte_at(pixel, 0);
        return qRgba(level, level, level, bits_ == 16 && has_alpha_ ? byte_at(pixel, 1) : 255);
    }

  private:
    unsigned kind_;
    unsigned bits_;
    bool has_alpha_;
    std::vector<QRgb> map_;
};

/// Draws a row; returns false, with an empty row, if the data end within it.
bool draw_row(PixelBytes& pixels, const Colors& colors, QImage& image, int row, bool reversed) {
    auto* const out = reinterpret_cast<QRgb*>(image.scanLine(row));
    const int width = image.width();
    for (int x = 0; x < width; ++x) {
        const std::string_view pixel = pixels.next();
        if (pixel.empty()) {
            std::fill_n(out, width, 0U);
            return false;
        }
        out[reversed ? width - 1 - x : x] = qPremultiply(colors(pixel));
    }
    return true;
}

/// Draws rows until the data end; returns their number.
int draw_rows(std::string_view file, const Header& header, bool has_alpha, QImage& image) {
    image.fill(0);
    PixelBytes pixels(part_at(file, header_size + header.id_size + header.map_bytes()), header);
    const Colors colors(file, header, has_alpha);
    const bool from_top = (header.descriptor & from_the_top) != 0;
    const bool reversed = (header.descriptor & from_the_right) != 0;
    const int height = image.height();
    int done = 0;
    while (done < height && draw_row(pixels, colors, image, from_top ? done : height - 1 - done, reversed)) ++done;
    return done;
}

/// Returns true if no pixel is visible.
bool is_clear(const QImage& image) {
    const auto* const pixels = reinterpret_cast<const QRgb*>(image.constBits());
    const auto count = static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height());
    return std::all_of(pixels, pixels + count, [](QRgb pixel) { return pixel == 0; });
}

}  // namespace

bool is_tga(std::string_view file) {
    const Header header = read_header(file);
    return icon_count(file) == 0 && file.size() > header_size + header.id_size + header.map_bytes() &&
           makes_sense(header);
}

Drawn draw_tga(std::string_view file, qint64 most_pixels) {
    const Header header = read_header(file);
    Drawn drawn;
    drawn.original = header.size;
    if (!is_tga(file) || !has_pixels(header.size, most_pixels)) return drawn;
    drawn.image = QImage(header.size, QImage::Format_ARGB32_Premultiplied);
    if (drawn.image.isNull()) return drawn;
    // Many writers of 32 bits do not use the alpha byte; it is ignored if it would hide everything.
    int done = draw_rows(file, header, true, drawn.image);
    if (header.alpha_bits() == 0 && is_clear(drawn.image)) done = draw_rows(file, header, false, drawn.image);
    count_rows(drawn, done);
    return drawn;
}

}  // namespace quill::picture
