#include "picture/reading.h"

#include "checksum/checksum.h"
#include "picture/fields.h"
#include "picture/icon.h"

#include <QImageReader>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace quill::picture {
namespace {

constexpr int longest_side = 65'535;

/// A kind of picture that takes time and memory in proportion to its pixels.
struct PlainKind {
    std::string_view name;  // as returned by QImageReader::format()
    int bytes_a_pixel;      // at most, read and scaled down from 8 bits a channel; measured
};
constexpr std::array<PlainKind, 13> plain_kinds = {{{"png", 6},
                                                    {"jpeg", 6},  // coefficients of a progressive file
                                                    {"gif", 12},  // with the pixels that a later frame restores
                                                    {"webp", 12},
                                                    {"bmp", 6},
                                                    {"tiff", 6},
                                                    {"tga", 8},
                                                    {"ico", 6},
                                                    {"pbm", 6},
                                                    {"pgm", 6},
                                                    {"ppm", 6},
                                                    {"xbm", 6},
                                                    {"xpm", 6}}};
constexpr int bytes_a_deep_pixel = 16;  // with 16 bits a channel

bool is_deep(QImage::Format format) {
    return format == QImage::Format_Grayscale16 ||
           (format != QImage::Format_Invalid && QImage::toPixelFormat(format).bitsPerPixel() > 32);
}

constexpr std::string_view png_signature = "\x89PNG\r\n\x1A\n";

std::uint32_t big_endian(std::string_view bytes, std::size_t at) {
    return at + 4 <= bytes.size() ? qFromBigEndian<quint32>(bytes.data() + at) : 0;
}

QByteArray copy_of(std::string_view bytes) {
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

QByteArray big_endian_bytes(std::uint32_t value) {
    const quint32 bytes = qToBigEndian(value);
    return {reinterpret_cast<const char*>(&bytes), sizeof bytes};
}

/// Returns a PNG with only the chunks needed to draw it (PNG, third edition, 5.3 and 11). If it ends within a chunk,
/// shortens that chunk to end there, so that its data are drawn too.
QByteArray drawn_chunks(std::string_view png) {
    constexpr std::array<std::string_view, 6> drawn = {"IHDR", "iCCP", "PLTE", "tRNS", "IDAT", "IEND"};
    constexpr std::size_t before = 8;           // bytes of a chunk before its data: length, type
    constexpr std::size_t around = before + 4;  // and after them: CRC
    const bool has_clear_color = clear_color_of(png).has_value();
    QByteArray out = copy_of(png_signature);
    for (std::size_t at = png_signature.size(); at + around <= png.size();) {
        const std::size_t stated = around + std::size_t{big_endian(png, at)};
        const std::string_view chunk = png.substr(at, stated);
        at += chunk.size();
        if (has_clear_color && chunk.substr(4, 4) == "tRNS") continue;
        if (std::find(drawn.begin(), drawn.end(), chunk.substr(4, 4)) == drawn.end()) continue;
        if (chunk.size() == stated) {
            out.append(chunk.data(), static_cast<qsizetype>(chunk.size()));
        } else {
            out += big_endian_bytes(static_cast<std::uint32_t>(chunk.size() - around));
            const std::string_view summed = chunk.substr(4, chunk.size() - before);
            out += copy_of(summed) + big_endian_bytes(crc32(0, summed));
        }
    }
    return out;
}

}  // namespace

std::optional<QRgba64> clear_color_of(std::string_view png) {
    constexpr std::size_t header_end = 33;  // IHDR, always first
    constexpr std::size_t chunk_size = 18;  // length, type, three channels, CRC
    if (!png.starts_with(png_signature) || part_at(png, 24, 2) != "\x10\x02") return std::nullopt;
    for (std::size_t at = header_end; at + chunk_size <= png.size(); at += std::size_t{12} + big_endian(png, at)) {
        const std::string_view type = png.substr(at + 4, 4);
        if (type == "IDAT") return std::nullopt;
        if (type != "tRNS" || big_endian(png, at) != 6) continue;
        const auto channel = [&](std::size_t i) { return qFromBigEndian<quint16>(png.data() + at + 8 + 2 * i); };
        return qRgba64(channel(0), channel(1), channel(2), 0xFFFF);
    }
    return std::nullopt;
}

QByteArray plain_picture(std::string_view bytes, unsigned index) {
    if (icon_count(bytes) == 0) return bytes.starts_with(png_signature) ? drawn_chunks(bytes) : copy_of(bytes);
    const QByteArray image = icon_image(bytes, index);
    const std::string_view png(image.constData(), static_cast<std::size_t>(image.size()));
    return png.starts_with(png_signature) ? drawn_chunks(png) : image;
}

QSize stated_size(const QImageReader& reader) {
    const QSize size = reader.size();
    return reader.format() == "bmp" ? QSize(size.width(), qAbs(size.height())) : size;
}

std::optional<qint64> picture_memory(const QImageReader& reader) {
    const QByteArray format = reader.format();
    const auto* const kind = std::find_if(plain_kinds.begin(), plain_kinds.end(),
                                          [&](const PlainKind& each) { return format == each.name.data(); });
    if (kind == plain_kinds.end()) return std::nullopt;  // asking other kinds for their size may already use any amount
    const QSize size = stated_size(reader);
    if (size.isEmpty() || size.width() > longest_side || size.height() > longest_side) return std::nullopt;
    const int each = is_deep(reader.imageFormat()) ? bytes_a_deep_pixel : kind->bytes_a_pixel;
    return qint64{size.width()} * size.height() * each;
}

}  // namespace quill::picture
