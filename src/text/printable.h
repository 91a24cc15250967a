#pragma once

#include <string>
#include <string_view>

/// Untrusted text, made safe to show.
namespace quill::text {

/// Returns true for characters that show nothing themselves but act on a terminal or on the text around them: control
/// characters (C0, DEL, C1), line and paragraph separators, marks of direction (RFC 5892's bidirectional controls), and
/// invisible operators and tags. Joiners (U+200B to U+200D) do not count: emoji and several scripts need them.
constexpr bool is_display_control(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x061C || c == 0x200E || c == 0x200F ||
           (c >= 0x2028 && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) || c == 0xFEFF ||
           (c >= 0xE0000 && c <= 0xE007F);
}

/// Returns `text` with `?` for each display control and for each byte that is not UTF-8, so that a hostile name cannot
/// steer a terminal, split a line or hide its extension.
std::string printable(std::string_view text);

}  // namespace quill::text
