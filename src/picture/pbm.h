#pragma once

#include "picture/drawn.h"

#include <string_view>

namespace quill::picture {

/// Returns true for a bitmap in plain text (netpbm's P1).
bool is_plain_pbm(std::string_view file);

/// Decodes a bitmap in plain text, whose digits may come without space between them. Rows that are missing are
/// transparent. Null where the header makes no sense or states more pixels than `most_pixels`.
Drawn draw_plain_pbm(std::string_view file, qint64 most_pixels);

}  // namespace quill::picture
