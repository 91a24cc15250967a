#pragma once

#include "picture/drawn.h"

#include <string_view>

namespace quill::picture {

/// Returns true for a file that may be TGA. The format has no signature, so check other formats first.
bool is_tga(std::string_view file);

/// Decodes a TGA file: with a palette, in colors or in greys, packed or not, starting at any of its corners, with its
/// alpha. Missing rows are transparent. Null if the header is invalid or states more pixels than `most_pixels`.
Drawn draw_tga(std::string_view file, qint64 most_pixels);

}  // namespace quill::picture
