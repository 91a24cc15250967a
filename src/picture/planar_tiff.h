#pragma once

#include "picture/drawn.h"

#include <string_view>

namespace quill::picture {

/// Returns true for a TIFF file whose first page has its channels in separate planes, which Qt does not decode.
bool is_planar_tiff(std::string_view file);

/// Decodes the first page of a TIFF file with libtiff. Null if it can't be read or states more pixels than
/// `most_pixels`.
Drawn draw_planar_tiff(std::string_view file, qint64 most_pixels);

}  // namespace quill::picture
