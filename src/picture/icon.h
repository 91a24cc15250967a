#pragma once

#include <QByteArray>

#include <string_view>

namespace quill::picture {

/// Returns the number of images in an icon or cursor file; 0 where `file` is neither.
unsigned icon_count(std::string_view file);

/// Returns the image `index` of an icon file, the largest one first: the PNG file that it is, a bitmap file where it
/// has masks for its channels, or an icon file of it alone. Empty where there is none that is honest about its size.
QByteArray icon_image(std::string_view file, unsigned index);

}  // namespace quill::picture
