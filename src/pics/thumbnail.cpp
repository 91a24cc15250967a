#include "pics/thumbnail.h"

#include "pics/format.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace quill::pics {
namespace {

constexpr std::size_t header_bytes = 54, row_bytes = 244, pixel_bytes = 3;
static_assert(header_bytes + row_bytes * thumbnail_height == thumbnail_size);

void put(std::string& out, std::size_t offset, std::uint32_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) out[offset + i] = static_cast<char>(number >> (8U * i));
}

/// Returns an empty bitmap: headers, and rows of white pixels with a byte of padding.
std::string white_bitmap() {
    std::string out(thumbnail_size, '\0');
    out.replace(0, 2, "BM");
    put(out, 2, static_cast<std::uint32_t>(thumbnail_size), 4);
    put(out, 10, static_cast<std::uint32_t>(header_bytes), 4);
    put(out, 14, 40, 4);
    put(out, 18, thumbnail_width, 4);
    put(out, 22, thumbnail_height, 4);
    put(out, 26, 1, 2);
    put(out, 28, 24, 2);
    put(out, 34, static_cast<std::uint32_t>(thumbnail_size - header_bytes), 4);
    for (std::size_t row = 0; row < thumbnail_height; ++row) {
        const std::size_t at = header_bytes + row * row_bytes;
        std::fill_n(out.begin() + static_cast<std::ptrdiff_t>(at), pixel_bytes * thumbnail_width, '\xFF');
    }
    return out;
}

/// Returns the size that the whole picture is scaled to.
platform::PictureSize scaled_size(platform::PictureSize size) {
    constexpr double wide = 100, high = 80;
    if (size.width >= size.height) {
        return {static_cast<int>(wide), static_cast<int>(std::lround(wide / size.width * size.height))};
    }
    return {static_cast<int>(std::lround(high / size.height * size.width)), static_cast<int>(high)};
}

/// The pixels from `begin` to `end` that become pixel `i` of `n`: at least one.
struct Span {
    int begin, end;
    Span(int i, int n, int pixels)
        : begin(static_cast<int>(static_cast<std::int64_t>(i) * pixels / n)),
          end(std::max(begin + 1, static_cast<int>(static_cast<std::int64_t>(i + 1) * pixels / n))) {}
};

/// Returns the mean of an area over white, as blue, green and red.
std::array<std::uint8_t, pixel_bytes> mean_over_white(const platform::Pixels& pixels, Span columns, Span rows) {
    std::array<std::uint32_t, pixel_bytes> sums = {};
    for (int y = rows.begin; y < rows.end; ++y) {
        for (int x = columns.begin; x < columns.end; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel,
                        pixels.bytes.get() + static_cast<std::size_t>(y) * pixels.stride +
                            static_cast<std::size_t>(x) * sizeof(pixel),
                        sizeof(pixel));
            const std::uint32_t white = 255U - (pixel >> 24U);
            for (std::size_t part = 0; part < pixel_bytes; ++part) sums[part] += (pixel >> (8U * part) & 255U) + white;
        }
    }
    const auto count = static_cast<std::uint32_t>((rows.end - rows.begin) * (columns.end - columns.begin));
    std::array<std::uint8_t, pixel_bytes> mean = {};
    for (std::size_t part = 0; part < pixel_bytes; ++part) {
        mean[part] = static_cast<std::uint8_t>(std::min(sums[part] / count, 255U));
    }
    return mean;
}

}  // namespace

std::string thumbnail_of(const platform::Pixels& pixels, platform::PictureSize original) {
    std::string out = white_bitmap();
    if (pixels.bytes == nullptr || pixels.size.width <= 0 || pixels.size.height <= 0) return out;
    const bool is_known = original.width > 0 && original.height > 0;
    const platform::PictureSize scaled = scaled_size(is_known ? original : pixels.size);
    for (int y = 0; y < std::min(scaled.height, thumbnail_height); ++y) {
        const std::size_t row = header_bytes + static_cast<std::size_t>(thumbnail_height - 1 - y) * row_bytes;
        for (int x = 0; x < std::min(scaled.width, thumbnail_width); ++x) {
            const auto mean = mean_over_white(pixels, Span(x, scaled.width, pixels.size.width),
                                              Span(y, scaled.height, pixels.size.height));
            std::memcpy(&out[row + static_cast<std::size_t>(x) * pixel_bytes], mean.data(), mean.size());
        }
    }
    return out;
}

}  // namespace quill::pics
