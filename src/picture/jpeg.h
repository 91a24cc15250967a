#pragma once

#include "picture/drawn.h"

#include <string_view>

namespace quill::picture {

bool is_jpeg(std::string_view file);

/// Decodes a JPEG file at the smallest scale that covers `bounds` (empty: full size). Missing rows are transparent.
/// Null if the header can't be read or states more pixels than `most_pixels`.
Drawn draw_jpeg(std::string_view file, QSize bounds, qint64 most_pixels);

}  // namespace quill::picture
