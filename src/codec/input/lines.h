#pragma once

#include <cstddef>
#include <string_view>

namespace quill::codec {

/// Returns the position of the first CR or LF in `s` at or after `from`, or s.size().
std::size_t find_line_end(std::string_view s, std::size_t from);
std::size_t find_line_end_reference(std::string_view s, std::size_t from);

/// Returns the number of CR and LF in `s`.
std::size_t count_line_ends(std::string_view s);
std::size_t count_line_ends_reference(std::string_view s);

/// The most characters that `find_line_beginning` accepts.
constexpr std::size_t most_first_characters = 4;

/// Returns the position of the first line after the one that begins at `from` which is empty or begins with one of
/// `first_characters`; s.size() if there is none. A line ends at CR LF, LF, CR and CR CR LF; no line begins at the end
/// of `s`.
std::size_t find_line_beginning(std::string_view s, std::size_t from, std::string_view first_characters);
std::size_t find_line_beginning_reference(std::string_view s, std::size_t from, std::string_view first_characters);

}  // namespace quill::codec
