#pragma once

#include "codec/input/line_cursor.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quill::codec {

/// The tag that replaces line ends in text copied from a web page; lower case here, either case in the text.
constexpr std::string_view line_tag = "<br>";

/// Returns the position of the next tag in `text` at or after `at`, or the end.
std::size_t find_tag(std::string_view text, std::size_t at);

/// Returns the text up to the next tag or line end, without blanks at its ends.
std::string_view first_row(std::string_view text);

/// Returns how many bytes of tags, blanks and line ends `text` begins with, and adds the number of tags to `tags`. A
/// tag that is cut off at the end does not count.
std::size_t pass_tags(std::string_view text, std::size_t& tags);

/// A text of more rows is left unchanged.
constexpr std::size_t most_tagged_rows = 1'000'000;

/// Returns the segments of a mail that is one long line, copied from a page with "<BR>" where its lines ended: one for
/// each of those lines. Empty if `range` of `input` is anything else.
std::vector<Segment> tagged_lines(std::string_view input, const Range& range);

}  // namespace quill::codec
