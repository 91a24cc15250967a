#pragma once

#include "picture/drawn.h"

#include <string_view>

namespace quill::picture {

/// Returns true for what may be a TGA file. The format has no signature, so ask for others first.
bool is_tga(std::string_view file);

/// Decodes a TGA file: with a palette, in colors or in greys, packed or not, from any of its corners, with the alpha
/// that it has. Rows that are missing are transparent. Null where the header makes no sense or states more pixels than
/// `most_pixels`.
Drawn draw_tga(std::string_view file, qint64 most_pixels);

}  // namespace quill::picture
