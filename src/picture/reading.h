#pragma once

#include <QByteArray>
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
/// of text are left out, since a few kilobytes of them can expand to gigabytes.
QByteArray plain_picture(std::string_view bytes, unsigned index = 0);

}  // namespace quill::picture
