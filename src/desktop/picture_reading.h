#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>
#include <string>
#include <string_view>

class QImageReader;

/// Reading pictures from strangers within a bounded memory.
namespace quill::desktop {

/// Returns the picture in the file at `path`, scaled down to fit `bounds`; of an animation, the first. Null where the
/// file is not one of the plain picture kinds, or where reading it could take more than `most_picture_memory`.
QImage read_picture(const std::string& path, QSize bounds);

/// Returns the picture in the bytes of a file, likewise.
QImage read_picture(std::string_view file, QSize bounds);

/// Bytes that one picture may take while it is read and scaled down.
constexpr qint64 most_picture_memory = qint64{320} << 20U;

/// Returns the bytes that the picture in `reader` may take, by its kind, its size and its depth; nullopt for a picture
/// whose kind or size is not among those that are read. Reads headers only.
std::optional<qint64> picture_memory(const QImageReader& reader);

/// Returns what is decoded of a picture file: of an icon that holds a PNG, that PNG; of a PNG, the chunks that draw it.
/// Chunks of text are left out, since a few kilobytes of them can expand to gigabytes.
QByteArray plain_picture(std::string_view bytes);

}  // namespace quill::desktop
