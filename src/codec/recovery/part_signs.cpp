#include "codec/recovery/part_signs.h"

#include "codec/base64/base64_lines.h"
#include "codec/hex.h"
#include "codec/mail/header_block.h"
#include "codec/mail/message_separator.h"
#include "codec/mail/nested_message.h"
#include "codec/scan/text_scan.h"
#include "codec/uu/uu_line.h"
#include "text/ascii.h"

#include <algorithm>

namespace quill::codec {
namespace {

constexpr unsigned most_checked_lines = 64;
constexpr std::size_t shortest_full_row = 60;  // characters of Base64, as encoders write them
constexpr std::uint64_t longest_row = 1024;    // characters
constexpr unsigned most_signature_lines = 8;
constexpr std::string_view signature_mark = "-- ";

/// Returns true for a row of uuencoded data, which may contain a colon like a field.
bool is_uu_row(std::string_view line) {
    const uu::DataLine data = uu::judge(uu::Alphabet::uu, line);
    return data.clean && data.fit != uu::Fit::none && data.fit != uu::Fit::stripped;
}

/// The fields from a line onwards.
struct Fields {
    unsigned count = 0;
    bool content = false;    ///< a Content- field is among them
    bool separated = false;  ///< an empty line ends them
};

Fields fields_at(const LineCursor& cursor, const Line& line) {
    Fields out{1, is_content_field(line.text)};
    Line next;
    Position at = line.next;
    for (unsigned n = 0; n < most_checked_lines && cursor.peek(at, peeked_characters, next); ++n, at = next.next) {
        out.separated = is_blank_line(next.text);
        if (out.separated) break;
        if (next.text.front() == ' ' || next.text.front() == '\t') continue;
        if (field_name(next.text).empty() || is_uu_row(next.text)) break;
        ++out.count;
        out.content = out.content || is_content_field(next.text);
    }
    return out;
}

bool is_article_header(const LineCursor& cursor, const Line& line) {
    if (!begins_message_header(line.text) || is_uu_row(line.text)) return false;
    const Fields fields = fields_at(cursor, line);
    return fields.separated && fields.count > 1;
}

/// Returns true if a few lines follow that can't be data, and then the next article.
bool is_signature_between(const LineCursor& cursor, const Line& mark) {
    Line line = mark;
    for (unsigned n = 0; n <= most_signature_lines && cursor.peek(line.next, peeked_characters, line); ++n) {
        if (is_article_header(cursor, line)) return true;
        if (sniff_bare_uu(line.text) || sniff_bare_base64(line.text)) return false;
    }
    return false;
}

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
    const Fields fields = fields_at(cursor, line);
    return fields.separated && fields.content;
}

bool begins_article(const LineCursor& cursor, const Line& line) {
    if (line.text == signature_mark) return is_signature_between(cursor, line);
    return is_article_header(cursor, line);
}

Position end_of_rows(const LineCursor& cursor, Position at) {
    const Segment& segment = cursor.segment(at);
    Position out = at;
    for (unsigned n = 0; n < most_checked_lines && at.offset > segment.range.begin; ++n) {
        const Position line_end = before_line_end(cursor, at);
        const std::uint64_t from =
            std::max(segment.range.begin, line_end.offset - std::min(line_end.offset, longest_row));
        std::string_view line = segment.input.substr(from, line_end.offset - from);
        line.remove_prefix(line.find_last_of("\r\n") + 1);
        at.offset = line_end.offset - line.size();
        if (is_blank_line(line)) continue;
        if (is_base64_line(line) || is_nearly_base64(line)) break;
        out = at;
    }
    return out;
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
