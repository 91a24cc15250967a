#include "cli/json.h"

#include "text/printable.h"
#include "text/utf8.h"

#include <array>
#include <cstdio>

namespace quill::cli {
namespace {

void append_u_escape(std::string& out, unsigned code_unit) {
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04x", code_unit & 0xFFFFU);
    out += escape.data();
}

/// Appends `c` as one \u escape, or as two for the surrogate pair of a character above U+FFFF.
void append_escaped(std::string& out, char32_t c) {
    if (c >= 0x10000) append_u_escape(out, 0xD800U + ((c - 0x10000) >> 10U));
    append_u_escape(out, c >= 0x10000 ? 0xDC00U + (c & 0x3FFU) : c);
}

void append_json_character(std::string& out, char32_t c) {
    switch (c) {
        case U'"':
            out += "\\\"";
            break;
        case U'\\':
            out += "\\\\";
            break;
        case U'\n':
            out += "\\n";
            break;
        case U'\t':
            out += "\\t";
            break;
        default:
            if (text::is_display_control(c)) {
                append_escaped(out, c);
            } else {
                text::append_utf8(out, c);
            }
    }
}

}  // namespace

std::string json_string(std::string_view bytes) {
    std::string out = "\"";
    while (!bytes.empty()) {
        if (text::character_length(bytes) == 0) {
            append_u_escape(out, 0xDC00U + static_cast<unsigned char>(bytes.front()));
            bytes.remove_prefix(1);
        } else {
            append_json_character(out, text::next_character(bytes));
        }
    }
    return out + "\"";
}

std::string json_or_null(std::string_view bytes) {
    return bytes.empty() ? "null" : json_string(bytes);
}

std::string json_flag(bool value) {
    return value ? "true" : "false";
}

std::string json_object(std::initializer_list<std::pair<std::string_view, std::string>> members) {
    std::string out = "{";
    for (const auto& [name, value] : members) {
        if (out.size() > 1) out += ", ";
        out += json_string(name) + ": " + value;
    }
    return out + "}";
}

}  // namespace quill::cli
