#pragma once

#include "picture/drawn.h"

#include <string_view>

namespace quill::picture {

/// Returns true for a TIFF file whose first page has its channels in planes of their own, which Qt does not decode.
bool is_planar_tiff(std::string_view file);

/// Decodes the first page of a TIFF file, by libtiff. Null where it is not read or states more pixels than
/// `most_pixels`.
Drawn draw_planar_tiff(std::string_view file, qint64 most_pixels);

}  // namespace quill::picture
