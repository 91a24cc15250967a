#include "desktop/picture_reading.h"

#include "files/directory.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace quill::desktop {
namespace {

constexpr std::uint64_t most_bytes = 32U << 20U;
constexpr int longest_side = 65'535;
constexpr int largest_icon = 256;       // what the directory of an icon file can state
constexpr int most_qt_megabytes = 256;  // for one QImage

/// A kind of picture whose reading takes time and memory in proportion to its pixels.
struct PlainKind {
    std::string_view name;  // as QImageReader::format() gives it
    int bytes_a_pixel;      // at most, read and scaled down from 8 bits a channel; measured
};
constexpr std::array<PlainKind, 12> plain_kinds = {{{"png", 6},
                                                    {"jpeg", 6},  // coefficients of a progressive one
                                                    {"gif", 12},  // with what a later frame restores
                                                    {"webp", 12},
                                                    {"bmp", 6},
                                                    {"tiff", 6},
                                                    {"ico", 6},
                                                    {"pbm", 6},
                                                    {"pgm", 6},
                                                    {"ppm", 6},
                                                    {"xbm", 6},
                                                    {"xpm", 6}}};
constexpr int bytes_a_deep_pixel = 16;  // of 16 bits a channel

bool is_deep(QImage::Format format) {
    return format == QImage::Format_Grayscale16 ||
           (format != QImage::Format_Invalid && QImage::toPixelFormat(format).bitsPerPixel() > 32);
}

constexpr std::string_view png_signature = "\x89PNG\r\n\x1A\n";

std::uint32_t big_endian(std::string_view bytes, std::size_t at) {
    return at + 4 <= bytes.size() ? qFromBigEndian<quint32>(bytes.data() + at) : 0;
}

std::uint32_t little_endian(std::string_view bytes, std::size_t at) {
    return at + 4 <= bytes.size() ? qFromLittleEndian<quint32>(bytes.data() + at) : 0;
}

QByteArray copy_of(std::string_view bytes) {
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

/// Returns a PNG without what is not needed to draw it (PNG, third edition, 5.3 and 11).
QByteArray drawn_chunks(std::string_view png) {
    constexpr std::array<std::string_view, 5> drawn = {"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
    constexpr std::size_t around = 12;  // bytes of a chunk besides its data: length, type, CRC
    QByteArray out = copy_of(png_signature);
    for (std::size_t at = png_signature.size(); at + around <= png.size();) {
        const std::string_view chunk = png.substr(at, around + big_endian(png, at));
        if (std::find(drawn.begin(), drawn.end(), chunk.substr(4, 4)) != drawn.end()) {
            out.append(chunk.data(), static_cast<qsizetype>(chunk.size()));
        }
        at += chunk.size();
    }
    return out;
}

/// Returns an icon file from its first picture on; empty where `bytes` are not an icon file.
std::string_view first_of_icon(std::string_view bytes) {
    constexpr std::string_view icon_signature("\0\0\1\0", 4);
    constexpr std::size_t offset_of_first = 18;
    const std::size_t offset = little_endian(bytes, offset_of_first);
    return bytes.starts_with(icon_signature) && offset < bytes.size() ? bytes.substr(offset) : std::string_view();
}

/// Returns whether the bitmap in an icon is no larger than its directory can state: Qt takes its size from either.
bool is_honest_bitmap(std::string_view bitmap) {
    constexpr std::uint32_t header_size = 40;
    return little_endian(bitmap, 0) == header_size && little_endian(bitmap, 4) <= largest_icon &&
           little_endian(bitmap, 8) <= 2 * largest_icon;
}

}  // namespace

QByteArray plain_picture(std::string_view bytes) {
    if (bytes.starts_with(png_signature)) return drawn_chunks(bytes);
    const std::string_view icon = first_of_icon(bytes);
    if (icon.starts_with(png_signature)) return drawn_chunks(icon);
    if (!icon.empty() && !is_honest_bitmap(icon)) return {};
    return copy_of(bytes);
}

std::optional<qint64> picture_memory(const QImageReader& reader) {
    const QByteArray format = reader.format();
    const auto* const kind = std::find_if(plain_kinds.begin(), plain_kinds.end(),
                                          [&](const PlainKind& each) { return format == each.name.data(); });
    if (kind == plain_kinds.end()) return std::nullopt;  // asking others for their size may take any amount already
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > longest_side || size.height() > longest_side) return std::nullopt;
    const int each = is_deep(reader.imageFormat()) ? bytes_a_deep_pixel : kind->bytes_a_pixel;
    return qint64{size.width()} * size.height() * each;
}

QImage read_picture(const std::string& path, QSize bounds) {
    const auto size = files::file_size(path);
    if (!size || *size > most_bytes) return {};
    const auto bytes = files::read_file(path);
    return bytes ? read_picture(std::string_view(*bytes), bounds) : QImage();
}

QImage read_picture(std::string_view file, QSize bounds) {
    QImageReader::setAllocationLimit(most_qt_megabytes);
    if (file.empty() || file.size() > most_bytes) return {};
    QByteArray content = plain_picture(file);
    QBuffer buffer(&content);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const std::optional<qint64> memory = picture_memory(reader);
    if (!memory || *memory > most_picture_memory) return {};
    const QSize whole = reader.size();
    if (whole.width() > bounds.width() || whole.height() > bounds.height()) {
        reader.setScaledSize(whole.scaled(bounds, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }
    return reader.read();
}

}  // namespace quill::desktop
