#pragma once

#include "picture/drawn.h"

#include <string_view>

namespace quill::picture {

/// Returns true for a bitmap in plain text (netpbm's P1).
bool is_plain_pbm(std::string_view file);

/// Decodes a bitmap in plain text, whose digits need no space between them. Missing rows are transparent. Null if the
/// header is invalid or states more pixels than `most_pixels`.
Drawn draw_plain_pbm(std::string_view file, qint64 most_pixels);

}  // namespace quill::picture
