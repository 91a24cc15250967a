#pragma once

#include "codec/input/line_cursor.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quill::codec {

/// What stands where a line ends in text that was copied from a page; in lower case here, in either case there.
constexpr std::string_view line_tag = "<br>";

/// Where the next tag stands in `text` from `at` on, or the end.
std::size_t find_tag(std::string_view text, std::size_t at);

/// The text up to the next tag or line end, without blanks at its ends.
std::string_view first_row(std::string_view text);

/// How many bytes of tags, blanks and line ends `text` begins with; `tags` counts on. A tag that is cut off at its end
/// is none.
std::size_t pass_tags(std::string_view text, std::size_t& tags);

/// A text of more rows is left as it is.
constexpr std::size_t most_tagged_rows = 1'000'000;

/// A mail that is one long line, copied from a page, with "<BR>" where its lines ended: a segment for each of those
/// lines. Empty where `range` of `input` is anything else.
std::vector<Segment> tagged_lines(std::string_view input, const Range& range);

}  // namespace quill::codec
