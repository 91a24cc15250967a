#include "codec/wrappings/html_tokens.h"
#include "codec/wrappings/line_signs.h"
#include "codec/wrappings/rows.h"

#include <algorithm>
#include <string>

namespace quill::codec {
namespace {

/// Returns true if `line` was escaped: it contains nothing that would have been.
bool is_escaped(std::string_view line) {
    bool escaped = false;
    for (std::size_t at = 0; (at = line.find_first_of("<>&", at)) != std::string_view::npos;) {
        const Escape escape = line[at] == '&' ? read_escape(line.substr(at)) : Escape{};
        if (escape.size == 0) return false;
        escaped = true;
        at += escape.size;
    }
    return escaped;
}

void unescape(std::string_view text, std::size_t begin, std::size_t end, PlainText& out) {
    std::size_t kept = begin;
    for (std::size_t at = begin; (at = text.substr(0, end).find('&', at)) != std::string_view::npos;) {
        const Escape escape = read_escape(text.substr(at, end - at));
        if (escape.size > 0) {
            out.keep(kept, at);
            out.add(escape.bytes, at);
            kept = at + escape.size;
        }
        at += escape.size > 0 ? escape.size : 1;
    }
    out.keep(kept, end);
}

std::string unescaped(std::string_view line) {
    std::string out;
    for (std::size_t at = 0; at < line.size();) {
        const Escape escape = line[at] == '&' ? read_escape(line.substr(at)) : Escape{};
        out += escape.size > 0 ? escape.bytes : std::string(1, line[at]);
        at += std::max<std::size_t>(escape.size, 1);
    }
    return out;
}

/// Returns true if a line shows that the text is escaped, and is not just a name with "&amp;" in it: data that fits
/// once unescaped, or brackets or quotes that are all escaped.
bool shows_escapes(std::string_view line) {
    constexpr std::size_t longest = 1024;
    if (line.size() > longest || !is_escaped(line)) return false;
    if (line.find("&lt;") != std::string_view::npos && line.find("&gt;") != std::string_view::npos) return true;
    return line.find("=&quot;") != std::string_view::npos || is_full_row(unescaped(line));
}

/// Returns true if some line shows it. Rows of yEnc may contain anything: only two count.
bool is_escaped_text(std::string_view text) {
    bool in_yenc = false;
    unsigned rows = 0;
    while (!text.empty()) {
        const std::string_view line = next_line(text).text;
        if (line.starts_with("=y")) in_yenc = line.starts_with("=ybegin ");
        if (in_yenc && is_escaped(line) && ++rows > 1) return true;
        if (shows_escapes(line)) return true;
    }
    return false;
}

}  // namespace

bool detect_html_escapes(const Sample& sample) {
    return sample.any(has_named_escape);
}

void unwrap_html_escapes(std::string_view wrapped, PlainText& out) {
    if (!is_escaped_text(wrapped)) return;
    for (std::size_t at = 0; at < wrapped.size() && !out.stopped();) {
        const std::size_t line_end = wrapped.find('\n', at);
        const std::size_t end = line_end == std::string_view::npos ? wrapped.size() : line_end + 1;
        if (is_escaped(wrapped.substr(at, end - at))) {
            unescape(wrapped, at, end, out);
        } else {
            out.keep(at, end);
        }
        at = end;
    }
}

}  // namespace quill::codec
