#pragma once

#include <cstddef>
#include <string_view>

namespace quill::codec {

/// The position of the first CR or LF in `s` from `from` on, or s.size().
std::size_t find_line_end(std::string_view s, std::size_t from);
std::size_t find_line_end_reference(std::string_view s, std::size_t from);

/// The number of CR and LF in `s`.
std::size_t count_line_ends(std::string_view s);
std::size_t count_line_ends_reference(std::string_view s);

/// The most characters that `find_line_beginning` takes.
constexpr std::size_t most_first_characters = 4;

/// The position of the first line behind the one that begins at `from` which is empty or begins with one of
/// `first_characters`; s.size() where there is none. A line ends at CR LF, LF, CR and CR CR LF; at the end of `s` none
/// begins.
std::size_t find_line_beginning(std::string_view s, std::size_t from, std::string_view first_characters);
std::size_t find_line_beginning_reference(std::string_view s, std::size_t from, std::string_view first_characters);

}  // namespace quill::codec
