#include "picture/planar_tiff.h"

#include "picture/fields.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <tiffio.h>

namespace quill::picture {
namespace {

/// A file in memory for libtiff to read.
struct Source {
    std::string_view bytes;
    std::uint64_t at = 0;
};

Source& source_of(thandle_t handle) {
    return *static_cast<Source*>(handle);
}

tmsize_t read_source(thandle_t handle, void* out, tmsize_t size) {
    Source& source = source_of(handle);
    const std::string_view part =
        part_at(source.bytes, source.at, static_cast<std::size_t>(std::max<tmsize_t>(size, 0)));
    std::copy(part.begin(), part.end(), static_cast<char*>(out));
    source.at += part.size();
    return static_cast<tmsize_t>(part.size());
}

tmsize_t write_nothing(thandle_t, void*, tmsize_t) {
    return 0;
}

toff_t seek_source(thandle_t handle, toff_t offset, int whence) {
    Source& source = source_of(handle);
    const std::uint64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? source.at : source.bytes.size();
    return source.at = base + offset;
}

int close_nothing(thandle_t) {
    return 0;
}

toff_t size_of_source(thandle_t handle) {
    return source_of(handle).bytes.size();
}

using Tiff = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

Tiff open(Source& source) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    return {TIFFClientOpen("picture", "rm", &source, read_source, write_nothing, seek_source, close_nothing,
                           size_of_source, nullptr, nullptr),
            &TIFFClose};
}

QSize size_of(TIFF* tiff) {
    std::uint32_t width = 0, height = 0;
    constexpr std::uint32_t longest_side = 65'535;
    if (TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width) == 0 || TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height) == 0)
        return {};
    if (width > longest_side || height > longest_side) return {};
    return {static_cast<int>(width), static_cast<int>(height)};
}

/// Converts libtiff's pixels, whose colors are premultiplied, to Qt's.
void swap_channels(QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
        // Red is in the lowest byte.
        std::transform(row, row + image.width(), row, [](std::uint32_t pixel) {
            return (pixel & 0xFF00FF00U) | (pixel & 0xFFU) << 16U | (pixel >> 16U & 0xFFU);
        });
    }
}

bool is_tiff(std::string_view file) {
    return file.starts_with(std::string_view("II*\0", 4)) || file.starts_with(std::string_view("MM\0*", 4));
}

}  // namespace

bool is_planar_tiff(std::string_view file) {
    if (!is_tiff(file)) return false;
    Source source{file};
    const Tiff tiff = open(source);
    std::uint16_t planes = 0, channels = 1;
    if (!tiff) return false;
    TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_PLANARCONFIG, &planes);
    TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, &channels);
    return planes == PLANARCONFIG_SEPARATE && channels > 1;
}

Drawn draw_planar_tiff(std::string_view file, qint64 most_pixels) {
    Source source{file};
    const Tiff tiff = open(source);
    Drawn drawn;
    if (!tiff) return drawn;
    drawn.original = size_of(tiff.get());
    if (!has_pixels(drawn.original, most_pixels)) return drawn;
    drawn.image = QImage(drawn.original, QImage::Format_ARGB32_Premultiplied);
    if (drawn.image.isNull()) return drawn;
    const auto width = static_cast<std::uint32_t>(drawn.original.width());
    const auto height = static_cast<std::uint32_t>(drawn.original.height());
    auto* const pixels = reinterpret_cast<std::uint32_t*>(drawn.image.bits());
    const bool whole = TIFFReadRGBAImageOriented(tiff.get(), width, height, pixels, ORIENTATION_TOPLEFT, 1) != 0;
    swap_channels(drawn.image);
    count_rows(drawn, whole ? drawn.original.height() : 0);
    return drawn;
}

}  // namespace quill::picture
