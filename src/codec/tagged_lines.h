#pragma once

#include "codec/line_cursor.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quill::codec {

/// A text of more rows is left as it is.
constexpr std::size_t most_tagged_rows = 1'000'000;

/// A mail that is one long line, copied from a page, with "<BR>" where its lines ended: a segment for each of those
/// lines. Empty where `range` of `input` is anything else.
std::vector<Segment> tagged_lines(std::string_view input, const Range& range);

}  // namespace quill::codec
