#pragma once

#include "picture/drawn.h"

#include <string_view>

namespace quill::picture {

bool is_bmp(std::string_view file);

/// Decodes a Windows or OS/2 bitmap file: 1 to 32 bits a pixel, with a palette or with masks of any width, plain or
/// packed by runs (RLE4, RLE8), with alpha if a mask states it. Missing rows are transparent. Null if the header is
/// invalid, states another packing or more pixels than `most_pixels`.
Drawn draw_bmp(std::string_view file, qint64 most_pixels);

}  // namespace quill::picture
