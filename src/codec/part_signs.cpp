#include "codec/part_signs.h"

#include "codec/header_block.h"
#include "codec/hex.h"
#include "codec/nested_message.h"
#include "codec/text_scan.h"
#include "text/ascii.h"

#include <algorithm>

namespace quill::codec {
namespace {

constexpr unsigned most_checked_lines = 64;
constexpr std::size_t shortest_full_row = 60;  // characters of Base64, as encoders write them

}  // namespace

bool is_content_field(std::string_view line) {
    return text::starts_with_ignoring_case(line, "content-") && begins_message_header(line);
}

bool is_multipart(const ContentHeader& header) {
    return header.type.starts_with("multipart/");
}

bool is_nested_message(const ContentHeader& header) {
    return header.type.starts_with("message/") && header.type != "message/partial" &&
           header.type != "message/delivery-status" && header.encoding == TransferEncoding::identity;
}

bool shows_inner_boundaries(const ContentHeader& header) {
    return is_message_type(header.type) && header.encoding == TransferEncoding::quoted_printable;
}

bool is_plain_header(const LineCursor& cursor, Position at, const IsStop& is_stop) {
    Line line;
    for (unsigned n = 0; n < most_checked_lines && cursor.peek(at, peeked_characters, line); ++n, at = line.next) {
        if (is_blank_line(line.text) || is_stop(line)) return false;
        const std::string_view text = text::trim(line.text);
        for (std::size_t i = text.find('='); i != text.npos && i + 1 < text.size(); i = text.find('=', i + 1)) {
            const auto code = hex_byte(text.substr(i + 1));
            const bool is_value = text::ends_with_ignoring_case(text.substr(0, i), "boundary") ||
                                  text::ends_with_ignoring_case(text.substr(0, i), "name");
            if (!code || (is_value && *code > ' ' && *code != '=')) return true;
        }
    }
    return false;
}

bool announces_content(const LineCursor& cursor, const Line& line) {
    bool content = is_content_field(line.text);
    Line next;
    Position at = line.next;
    for (unsigned n = 0; n < most_checked_lines && cursor.peek(at, peeked_characters, next); ++n, at = next.next) {
        if (is_blank_line(next.text)) return content;
        const bool folded = next.text.front() == ' ' || next.text.front() == '\t';
        if (!folded && field_name(next.text).empty()) return false;
        content = content || is_content_field(next.text);
    }
    return false;
}

bool ends_base64(const LineCursor& cursor, Position at, std::size_t line_size) {
    const Segment& segment = cursor.segment(at);
    const std::uint64_t from = std::max(segment.range.begin, at.offset - std::min<std::uint64_t>(at.offset, 4096));
    std::string_view before = segment.input.substr(from, at.offset - from);
    before = before.substr(0, before.find_last_not_of(" \t\r\n") + 1);
    before.remove_prefix(before.find_last_of("\r\n") + 1);
    while (before.ends_with('>')) before = text::trim(before.substr(0, std::min(before.rfind('<'), before.size() - 1)));
    return before.ends_with('=') || before.size() < std::max(line_size, shortest_full_row);
}

bool wraps_file(const ContentHeader& header) {
    return header.encoding == TransferEncoding::uuencode || header.encoding == TransferEncoding::binhex ||
           header.encoding == TransferEncoding::yenc || header.type == "application/mac-binhex40" ||
           header.type == "application/x-uuencode" || header.type == "application/x-uuencoded";
}

}  // namespace quill::codec
