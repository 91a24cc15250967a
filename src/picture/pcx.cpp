#include "picture/pcx.h"

#include "picture/fields.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace quill::picture {
namespace {

constexpr std::size_t header_size = 128;
constexpr std::size_t palette_size = 768;  // at the end, after a byte 12
constexpr std::uint8_t palette_mark = 12;

/// The header's relevant fields.
struct Header {
    unsigned bits = 0;  ///< of a pixel in a plane
    unsigned planes = 0;
    QSize size = {};
    std::size_t row_bytes = 0;  ///< of one plane
    bool packed = false;
};

Header read_header(std::string_view file) {
    return {byte_at(file, 3),
            byte_at(file, 65),
            {word_at(file, 8) - word_at(file, 4) + 1, word_at(file, 10) - word_at(file, 6) + 1},
            static_cast<std::size_t>(word_at(file, 66)),
            byte_at(file, 2) != 0};
}

bool makes_sense(const Header& header) {
    const bool known = header.planes == 1 ? header.bits == 1 || header.bits == 2 || header.bits == 4 || header.bits == 8
                       : header.planes == 3 ? header.bits == 8 || header.bits == 1
                                            : header.planes == 4 && (header.bits == 1 || header.bits == 8);
    return known && !header.size.isEmpty() &&
           header.row_bytes * 8 >= static_cast<std::size_t>(header.size.width()) * header.bits;
}

std::vector<QRgb> read_colors(std::string_view bytes, std::size_t count) {
    std::vector<QRgb> colors;
    for (std::size_t i = 0; i < count; ++i) {
        colors.push_back(qRgb(byte_at(bytes, 3 * i), byte_at(bytes, 3 * i + 1), byte_at(bytes, 3 * i + 2)));
    }
    return colors;
}

/// Returns the colors of a picture of fewer than 24 bits.
std::vector<QRgb> palette(std::string_view file, const Header& header) {
    const bool has_tail =
        file.size() > header_size + palette_size && byte_at(file, file.size() - palette_size - 1) == palette_mark;
    if (header.bits == 8 && header.planes == 1 && has_tail) {
        return read_colors(file.substr(file.size() - palette_size), 256);
    }
    if (header.bits == 8) {
        std::vector<QRgb> greys(256);
        for (std::size_t i = 0; i < greys.size(); ++i)
            greys[i] = qRgb(static_cast<int>(i), static_cast<int>(i), static_cast<int>(i));
        return greys;
    }
    if (header.bits * header.planes == 1) return {qRgb(0, 0, 0), qRgb(255, 255, 255)};
    return read_colors(file.substr(16, 48), 16);
}

/// Unpacks the runs of a file, row by row.
class Rows {
  public:
    Rows(std::string_view data, bool packed) : data_(data), packed_(packed) {}

    /// Fills `out`; returns false if the data end first.
    bool read(std::vector<std::uint8_t>& out) {
        for (std::uint8_t& byte : out) {
            if (run_ == 0 && !next_run()) return false;
            byte = value_;
            --run_;
        }
        return true;
    }

  private:
    bool next_run() {
        constexpr std::uint8_t run_mark = 0xC0;
        while (at_ < data_.size()) {
            value_ = byte_at(data_, at_++);
            run_ = 1;
            if (!packed_ || (value_ & run_mark) != run_mark) return true;
            if (at_ == data_.size()) break;
            run_ = value_ & 0x3FU;
            value_ = byte_at(data_, at_++);
            if (run_ != 0) return true;  // a run of length 0 is skipped
        }
        run_ = 0;
        return false;
    }

    std::string_view data_;
    std::size_t at_ = 0;
    bool packed_;
    unsigned run_ = 0;
    std::uint8_t value_ = 0;
};

/// Returns the number that the planes of a row contain for the pixel `x`, lowest plane first.
unsigned value_of(const std::vector<std::uint8_t>& row, const Header& header, std::size_t x) {
    unsigned value = 0;
    for (unsigned plane = 0; plane < header.planes; ++plane) {
        const std::size_t bit = x * header.bits;
        const unsigned byte = row[plane * header.row_bytes + bit / 8];
        const unsigned part = byte >> (8 - header.bits - bit % 8) & ((1U << header.bits) - 1);
        value |= part << (plane * header.bits);
    }
    return value;
}

void draw_row(const std::vector<std::uint8_t>& row, const Header& header, const std::vector<QRgb>& colors, QRgb* out) {
    const auto width = static_cast<std::size_t>(header.size.width());
    for (std::size_t x = 0; x < width; ++x) {
        if (header.bits == 8 && header.planes >= 3) {
            out[x] = qRgb(row[x], row[header.row_bytes + x], row[2 * header.row_bytes + x]);
        } else {
            const unsigned value = value_of(row, header, x);
            out[x] = value < colors.size() ? colors[value] : qRgb(0, 0, 0);
        }
    }
}

}  // namespace

bool is_pcx(std::string_view file) {
    return file.size() > header_size && byte_at(file, 0) == 10 && byte_at(file, 1) <= 5 && byte_at(file, 2) <= 1 &&
           makes_sense(read_header(file));
}

Drawn draw_pcx(std::string_view file, qint64 most_pixels) {
    const Header header = read_header(file);
    Drawn drawn;
    drawn.original = header.size;
    if (!is_pcx(file) || !has_pixels(header.size, most_pixels)) return drawn;
    drawn.image = QImage(header.size, QImage::Format_ARGB32_Premultiplied);
    if (drawn.image.isNull()) return drawn;
    drawn.image.fill(0);
    const std::vector<QRgb> colors = palette(file, header);
    Rows rows(file.substr(header_size), header.packed);
    std::vector<std::uint8_t> row(header.row_bytes * header.planes);
    int done = 0;
    for (; done < header.size.height() && rows.read(row); ++done) {
        draw_row(row, header, colors, reinterpret_cast<QRgb*>(drawn.image.scanLine(done)));
    }
    count_rows(drawn, done);
    return drawn;
}

}  // namespace quill::picture
