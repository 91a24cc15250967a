#pragma once

#include <cstddef>
#include <string_view>

namespace quill::codec {

/// The position of the first CR or LF in `s` from `from` on, or s.size().
std::size_t find_line_end(std::string_view s, std::size_t from);
std::size_t find_line_end_reference(std::string_view s, std::size_t from);

}  // namespace quill::codec
