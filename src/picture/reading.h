#pragma once

#include <QByteArray>
#include <QRgba64>
#include <QSize>
#include <QtGlobal>

#include <optional>
#include <string_view>

class QImageReader;

/// Bounds of what a picture may take while it is decoded.
namespace quill::picture {

/// Bytes that one picture may take while it is read and scaled down.
constexpr qint64 most_picture_memory = qint64{512} << 20U;

/// Pixels of a JPEG picture, which takes less memory for each.
constexpr qint64 most_pixels = qint64{128} << 20U;

/// Returns the size that the header states. That of a bitmap is negative where its rows begin at the top.
QSize stated_size(const QImageReader& reader);

/// Returns the bytes that the picture in `reader` may take, by its kind, its size and its depth; nullopt for a picture
/// whose kind or size is not among those that are read. Reads headers only.
std::optional<qint64> picture_memory(const QImageReader& reader);

/// Returns what is decoded of a picture file: of an icon, the image `index`; of a PNG, the chunks that draw it. Chunks
/// of text are left out, since a few kilobytes of them can expand to gigabytes; so is the clear color that
/// clear_color_of gives.
QByteArray plain_picture(std::string_view bytes, unsigned index = 0);

/// Returns the color of a PNG's clear pixels where that is of 16 bits a channel, which Qt mistakes.
std::optional<QRgba64> clear_color_of(std::string_view png);

}  // namespace quill::picture
