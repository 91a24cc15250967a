#include "codec/wrappings/line_signs.h"

#include "codec/base64/base64_lines.h"
#include "codec/input/lines.h"
#include "codec/mail/header_block.h"
#include "codec/recovery/part_signs.h"
#include "codec/scan/text_scan.h"
#include "codec/uu/uu_line.h"
#include "text/ascii.h"

#include <algorithm>

namespace quill::codec {
namespace {

constexpr std::size_t shortest_row = 60;
constexpr std::size_t longest_row = 200;

bool is_uu_row(std::string_view line) {
    const auto fits = [line](uu::Alphabet alphabet) {
        const uu::DataLine data = uu::judge(alphabet, line);
        return data.clean && (data.fit == uu::Fit::exact || data.fit == uu::Fit::extra) && data.bytes > 0;
    };
    return fits(uu::Alphabet::uu) || fits(uu::Alphabet::xx);
}

bool is_begin_with_mode(std::string_view line) {
    const std::size_t mode = std::min(line.find_first_of(" \t"), line.size());
    const std::string_view rest = text::trim(line.substr(mode));
    return rest.size() > 4 && rest.find_first_not_of("0123456789") >= 3;
}

}  // namespace

bool is_data_mark(std::string_view line) {
    return (sniff_begin(line) && is_begin_with_mode(line)) || line.starts_with("=ybegin ") ||
           line.starts_with("=ypart ") || line.starts_with("=yend ") || line.starts_with("(This file must be conv");
}

bool is_full_row(std::string_view line) {
    if (line.size() < shortest_row || line.size() > longest_row) return false;
    if (line.find(' ') == std::string_view::npos && is_base64_line(line))
        return line.size() % 4 == 0 || is_uu_row(line);
    return is_uu_row(line) || is_binhex_line(line);
}

bool is_header_line(std::string_view line) {
    return is_content_field(line) || begins_message_header(line);
}

TextLine next_line(std::string_view& text) {
    const std::size_t length = find_line_end(text, 0);
    const std::string_view end = text.substr(length, 3);
    const std::size_t ending = end == "\r\r\n" ? 3U : end.starts_with("\r\n") ? 2U : end.empty() ? 0U : 1U;
    const TextLine out{text.substr(0, length), end.substr(0, ending)};
    text.remove_prefix(length + ending);
    return out;
}

}  // namespace quill::codec
