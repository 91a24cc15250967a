#pragma once

#include <QByteArray>

#include <string_view>

namespace quill::picture {

/// Returns the number of images in an icon or cursor file; 0 if `file` is neither.
unsigned icon_count(std::string_view file);

/// Returns the image `index` of an icon file, the largest one first: a PNG file if it is one, a bitmap file if it has
/// masks for its channels, or an icon file with only this image. Empty if no such image states its true size.
QByteArray icon_image(std::string_view file, unsigned index);

}  // namespace quill::picture
