#include "codec/hex.h"
#include "codec/wrappings/line_signs.h"
#include "codec/wrappings/rows.h"
#include "text/ascii.h"

#include <algorithm>
#include <optional>
#include <string>

namespace quill::codec {
namespace {

/// The code after an "=" of quoted-printable: an escaped byte, or a soft line break.
struct QuotedByte {
    std::size_t size = 0;  ///< 0 if it is neither
    std::optional<char> byte;
};

QuotedByte read_quoted(std::string_view text, std::size_t at) {
    const std::string_view behind = text.substr(at + 1, 2);
    if (const std::optional<unsigned char> byte = hex_byte(behind)) return {3, static_cast<char>(*byte)};
    if (behind.starts_with("\r\n")) return {3, {}};
    if (behind.empty() || behind[0] == '\n' || behind[0] == '\r') return {behind.empty() ? 1U : 2U, {}};
    return {};
}

/// Returns true if `text`, which may be cut off at its end, contains escapes and no other "=".
bool fits(std::string_view text, bool cut) {
    constexpr std::size_t least = 2;
    std::size_t escapes = 0;
    for (std::size_t at = 0; (at = text.find('=', at)) != std::string_view::npos; ++at) {
        if (cut && text.size() - at < 3) break;
        const QuotedByte quoted = read_quoted(text, at);
        if (quoted.size == 0) return false;
        if (quoted.byte == '=') ++escapes;
    }
    return escapes >= least;
}

std::string decoded(std::string_view line) {
    std::string out;
    for (std::size_t at = 0; at < line.size();) {
        const QuotedByte quoted = line[at] == '=' ? read_quoted(line, at) : QuotedByte{1, line[at]};
        if (quoted.byte) out.push_back(*quoted.byte);
        at += std::max<std::size_t>(quoted.size, 1);
    }
    return out;
}

/// Returns true if the text was encoded with its header, or has none and contains data. A header that is not encoded
/// describes the body itself.
bool is_encoded_whole(std::string_view text) {
    constexpr std::size_t longest = 1024;
    constexpr std::string_view field = "content-transfer-encoding:";
    while (!text.empty()) {
        const std::string_view line = next_line(text).text.substr(0, longest);
        const std::string plain = decoded(line);
        if (is_data_mark(plain)) return true;
        const bool parameter = line.find("boundary=3D") != line.npos || line.find("name=3D") != line.npos;
        if (parameter) return true;
        if (text::starts_with_ignoring_case(line, field)) return false;
    }
    return false;
}

}  // namespace

bool detect_quoted_printable(const Sample& sample) {
    return sample.any([](std::string_view window) { return window.find("=3D") != std::string_view::npos; });
}

void unwrap_quoted_printable(std::string_view wrapped, PlainText& out) {
    const std::string_view first = wrapped.substr(0, Sample::short_text);
    const bool all = first.size() == wrapped.size();
    if (!fits(first, !all) || !is_encoded_whole(first) || (!all && !fits(wrapped, false))) return;
    for (std::size_t at = 0; at < wrapped.size() && !out.stopped();) {
        const std::size_t next = std::min(wrapped.find('=', at), wrapped.size());
        out.keep(at, next);
        if (next == wrapped.size()) break;
        const QuotedByte quoted = read_quoted(wrapped, next);
        if (quoted.byte) out.add(std::string(1, *quoted.byte), next);
        at = next + quoted.size;
    }
}

}  // namespace quill::codec
