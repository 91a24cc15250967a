#pragma once

#include "picture/drawn.h"

#include <string_view>

namespace quill::picture {

bool is_pcx(std::string_view file);

/// Decodes a PCX file: 1 to 8 bits a pixel in up to 4 planes, palettes of 2, 16 and 256 colors, and 24 bits. Missing
/// rows are transparent. Null if the header is invalid or states more pixels than `most_pixels`.
Drawn draw_pcx(std::string_view file, qint64 most_pixels);

}  // namespace quill::picture
