#include "picture/decoder.h"

#include "picture/bmp.h"
#include "picture/icon.h"
#include "picture/jpeg.h"
#include "picture/pbm.h"
#include "picture/pcx.h"
#include "picture/planar_tiff.h"
#include "picture/reading.h"
#include "picture/tga.h"

#include <QTransform>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace quill::picture {
namespace {

using worker::Fault;

constexpr unsigned most_frames = 100'000;

/// Turns a picture as its file requests.
QImage upright(const QImage& image, QImageIOHandler::Transformations turn) {
    QImage out = image;
    if ((turn & QImageIOHandler::TransformationRotate90) != 0) out = out.transformed(QTransform().rotate(90));
    const bool flip = (turn & QImageIOHandler::TransformationFlip) != 0;
    const bool mirror = (turn & QImageIOHandler::TransformationMirror) != 0;
    const bool turned = (turn & QImageIOHandler::TransformationRotate90) != 0;
    // Mirroring applies to the picture before it is turned.
    return flip || mirror ? out.mirrored(turned ? flip : mirror, turned ? mirror : flip) : out;
}

QSize upright(QSize size, QImageIOHandler::Transformations turn) {
    return (turn & QImageIOHandler::TransformationRotate90) != 0 ? size.transposed() : size;
}

/// Converts colors to sRGB, which the desktop shows.
QImage in_srgb(const QImage& image, const QColorSpace& colors) {
    const QColorSpace srgb(QColorSpace::SRgb);
    if (!colors.isValid() || colors == srgb || image.isNull()) return image;
    QImage out = image;
    out.setColorSpace(colors);
    return out.convertedToColorSpace(srgb).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage fitted(const QImage& image, QSize original, QSize bounds) {
    QImage out = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (bounds.isEmpty()) return out;
    const QSize wanted =
        original.boundedTo(bounds) == original ? original : original.scaled(bounds, Qt::KeepAspectRatio);
    const QSize size = wanted.expandedTo({1, 1});
    return size == out.size() ? out : out.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// Fills in the facts that follow from the drawn image.
void finish(Decoded& decoded, const Drawn& drawn, QImageIOHandler::Transformations turn, const Wanted& wanted) {
    decoded.original = upright(drawn.original, turn);
    decoded.percent = drawn.image.isNull() ? 0 : drawn.percent;
    decoded.fault = drawn.percent == 100 ? Fault::none : drawn.cut ? Fault::cut : Fault::damaged;
    if (!drawn.image.isNull()) decoded.image = fitted(upright(drawn.image, turn), decoded.original, wanted.bounds);
    if (!wanted.keeps_colors) decoded.image = in_srgb(decoded.image, drawn.colors);
    if (decoded.count == 0) decoded.count = 1;
}

QImageIOHandler::Transformations orientation(std::string_view file) {
    QByteArray bytes = QByteArray::fromRawData(file.data(), static_cast<qsizetype>(file.size()));
    QBuffer buffer(&bytes);
    return QImageReader(&buffer, "jpeg").transformation();
}

Decoded draw(const char* format, const Drawn& drawn, QImageIOHandler::Transformations turn, const Wanted& wanted) {
    Decoded decoded;
    decoded.format = format;
    if (wanted.index > 0) {
        decoded.fault = Fault::no_such_image;
        decoded.count = 1;
        return decoded;
    }
    finish(decoded, drawn, turn, wanted);
    if (qint64{drawn.original.width()} * drawn.original.height() > most_pixels) decoded.fault = Fault::too_large;
    return decoded;
}

/// A kind that Qt does not read, or not well. Of those without a plugin only JPEG turns its pictures.
struct OwnKind {
    const char* name;
    bool (*is)(std::string_view file);
    Drawn (*draw)(std::string_view file, qint64 most_pixels);
};
constexpr std::array<OwnKind, 5> own_kinds = {{
    {"bmp", is_bmp, draw_bmp},
    {"pcx", is_pcx, draw_pcx},
    {"pbm", is_plain_pbm, draw_plain_pbm},
    {"tiff", is_planar_tiff, draw_planar_tiff},
    {"tga", is_tga, draw_tga},  // it has no signature
}};

void clear_row(QImage& image, int row) {
    std::fill_n(image.scanLine(row), image.bytesPerLine(), uchar{0});
}

/// Returns an empty image for a reader to draw into; a null one if the reader makes its own.
QImage blank(const QImageReader& reader, QSize size) {
    const QImage::Format format = reader.imageFormat();
    if (format == QImage::Format_Invalid || size.isEmpty()) return {};
    QImage image(size, format);
    for (int row = 0; row < image.height(); ++row) clear_row(image, row);
    return image;
}

/// Returns for each row whether it was drawn: whether it is no longer blank, which pixels without transparency never
/// are.
std::vector<bool> drawn_rows(const QImage& image) {
    std::vector<bool> drawn;
    for (int row = 0; row < image.height(); ++row) {
        const uchar* bytes = image.constScanLine(row);
        drawn.push_back(std::any_of(bytes, bytes + image.bytesPerLine(), [](uchar byte) { return byte != 0; }));
    }
    return drawn;
}

/// Makes the pixels of one color transparent.
void clear_color(QImage& image, QRgba64 color) {
    if (image.isNull()) return;
    image.convertTo(QImage::Format_RGBA64);
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgba64*>(image.scanLine(y));
        std::replace(row, row + image.width(), color, QRgba64());
    }
}

/// Reads the next image, of the stated size. If a decoder fails, keeps what it has drawn.
Drawn read_next(QImageReader& reader, QSize size, std::optional<QRgba64> clear) {
    QImage image = blank(reader, size);
    const void* ours = image.constBits();
    const bool whole = reader.read(&image);
    if (clear && whole) {
        clear_color(image, *clear);
        ours = nullptr;
    }
    const bool reused = !image.isNull() && image.constBits() == ours;
    Drawn drawn;
    drawn.original = image.isNull() ? size : image.size();
    if (!whole && !reused) return drawn;
    // Some decoders report success for a file that ends early. Without transparency, skipped rows can be detected.
    std::vector<bool> rows(static_cast<std::size_t>(image.height()), true);
    if (reused && (!whole || image.format() == QImage::Format_RGB32)) rows = drawn_rows(image);
    const auto there = static_cast<int>(std::count(rows.begin(), rows.end(), true));
    if (there == 0) return drawn;
    drawn.colors = image.colorSpace();
    drawn.image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < image.height(); ++row) {
        if (!rows[static_cast<std::size_t>(row)]) clear_row(drawn.image, row);
    }
    drawn.percent = whole && there == image.height() ? 100 : std::min(99, 100 * there / image.height());
    return drawn;
}

}  // namespace

Decoded Decoder::decode(std::string_view file, const Wanted& wanted) {
    if (is_jpeg(file)) {
        const QImageIOHandler::Transformations turn = orientation(file);
        const bool turned = (turn & QImageIOHandler::TransformationRotate90) != 0;
        const QSize bounds = turned ? wanted.bounds.transposed() : wanted.bounds;
        return draw("jpeg", draw_jpeg(file, bounds, most_pixels), turn, wanted);
    }
    const QByteArray icon = icon_image(file, wanted.index);
    const std::string_view bitmap(icon.constData(), static_cast<std::size_t>(icon.size()));
    for (const OwnKind& kind : own_kinds) {
        if (kind.is(file)) return draw(kind.name, kind.draw(file, most_pixels), {}, wanted);
    }
    if (is_bmp(bitmap)) {
        Decoded decoded = draw("ico", draw_bmp(bitmap, most_pixels), {}, {wanted.bounds, 0, 0, wanted.keeps_colors});
        decoded.count = icon_count(file);
        return decoded;
    }
    return decode_by_plugin(file, wanted);
}

bool Decoder::open(std::string_view file, const Wanted& wanted) {
    if (opened_ && wanted.source != 0 && opened_->source == wanted.source && opened_->next <= wanted.index) return true;
    opened_ = std::make_unique<Opened>();
    opened_->source = wanted.source;
    opened_->bytes = plain_picture(file, wanted.index);
    opened_->buffer.setBuffer(&opened_->bytes);
    opened_->reader.setDevice(&opened_->buffer);
    opened_->reader.setAutoTransform(false);
    opened_->reader.setDecideFormatFromContent(true);
    return opened_->reader.canRead();
}

/// Moves to an image of the open file.
bool Decoder::seek(unsigned index) {
    if (opened_->next == index) return true;
    if (opened_->reader.jumpToImage(static_cast<int>(index))) {
        opened_->next = index;
        return true;
    }
    if (index > most_frames || !opened_->reader.supportsAnimation()) return false;
    while (opened_->next < index) {
        if (opened_->reader.read().isNull()) return false;
        ++opened_->next;
    }
    return true;
}

Decoded Decoder::decode_by_plugin(std::string_view file, const Wanted& wanted) {
    Decoded decoded;
    decoded.fault = Fault::not_a_picture;
    const unsigned icons = icon_count(file);
    if (icons != 0 && wanted.index >= icons) decoded.fault = Fault::no_such_image;
    if (icons != 0 && wanted.index >= icons) return decoded;
    if (!open(file, wanted)) return decoded;
    QImageReader& reader = opened_->reader;
    const std::optional<qint64> memory = picture_memory(reader);
    decoded.format = icons != 0 ? QByteArray("ico") : reader.format();
    decoded.animated = icons == 0 && reader.supportsAnimation() && reader.imageCount() != 1;
    decoded.count = icons != 0 ? icons : static_cast<unsigned>(std::max(reader.imageCount(), 1));
    decoded.repeats = decoded.animated ? std::max(reader.loopCount(), -1) : 0;
    const QSize size = stated_size(reader);
    if (!memory) return decoded;
    decoded.fault = *memory > most_picture_memory ? Fault::too_large : Fault::no_such_image;
    if (*memory > most_picture_memory || (icons == 0 && !seek(wanted.index))) return decoded;
    const bool is_other_page = icons == 0 && wanted.index > 0;
    if (is_other_page && picture_memory(reader).value_or(most_picture_memory + 1) > most_picture_memory) {
        decoded.fault = Fault::too_large;
        return decoded;
    }
    const QImageIOHandler::Transformations turn = reader.transformation();
    const Drawn drawn = read_next(reader, is_other_page ? stated_size(reader) : size, clear_color_of(file));
    ++opened_->next;
    finish(decoded, drawn, turn, wanted);
    if (decoded.animated) decoded.delay = std::max(reader.nextImageDelay(), 0);
    if (decoded.fault != Fault::none || !decoded.animated) opened_.reset();
    return decoded;
}

}  // namespace quill::picture
