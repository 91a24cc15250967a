#pragma once

#include <QColor>
#include <QSize>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quill::picture {

/// The facts about the pixels in the headers of a bitmap file.
struct BmpHeader {
    enum class Packing : std::uint8_t { none, rle8, rle4 };

    QSize size = {};
    unsigned bits = 0;  ///< of a pixel: 1, 2, 4, 8, 16, 24 or 32
    Packing packing = Packing::none;
    bool from_top = false;
    std::array<std::uint32_t, 4> masks = {};  ///< red, green, blue, alpha; for 16 and 32 bits
    std::vector<QRgb> palette = {};           ///< for up to 8 bits
    std::size_t data_at = 0;

    bool is_packed() const { return packing != Packing::none; }
    /// Returns the bytes of an unpacked row, with its padding.
    std::size_t row_bytes() const { return (static_cast<std::size_t>(size.width()) * bits + 31) / 32 * 4; }
    /// Returns the picture's row for row number `i` of the file.
    int row_of(int i) const { return from_top ? i : size.height() - 1 - i; }
};

/// Reads the headers of a bitmap file of any version; nullopt for other files and for files that can't be drawn.
std::optional<BmpHeader> read_bmp_header(std::string_view file);

}  // namespace quill::picture
