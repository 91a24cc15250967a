#pragma once

#include <QByteArray>
#include <QRgba64>
#include <QSize>
#include <QtGlobal>

#include <optional>
#include <string_view>

class QImageReader;

/// Limits on decoding a picture.
namespace quill::picture {

/// The most bytes that one picture may use while it is read and scaled down.
constexpr qint64 most_picture_memory = qint64{512} << 20U;

/// The most pixels of a JPEG picture, which uses less memory for each.
constexpr qint64 most_pixels = qint64{128} << 20U;

/// Returns the size that the header states. The height of a bitmap is negative if its rows begin at the top.
QSize stated_size(const QImageReader& reader);

/// Returns the bytes that the picture in `reader` may use, by its kind, size and depth; nullopt for a picture of an
/// unsupported kind or size. Reads only headers.
std::optional<qint64> picture_memory(const QImageReader& reader);

/// Returns the part of a picture file to decode: of an icon, the image `index`; of a PNG, the chunks that draw it. Text
/// chunks are left out, since a few kilobytes of them can expand to gigabytes; so is the clear color that
/// clear_color_of returns.
QByteArray plain_picture(std::string_view bytes, unsigned index = 0);

/// Returns the color of a PNG's clear pixels if it has 16 bits a channel, which Qt misinterprets.
std::optional<QRgba64> clear_color_of(std::string_view png);

}  // namespace quill::picture
