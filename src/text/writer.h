#pragma once

#include <string>
#include <string_view>

namespace quill::text {

/// Appends `line` and CR LF to `out`.
inline void append_line(std::string& out, std::string_view line) {
    out.append(line).append("\r\n");
}

}  // namespace quill::text
