#include "codec/mail/message_separator.h"

#include "codec/mail/header_block.h"
#include "codec/mail/mime_header.h"
#include "codec/scan/text_scan.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quill::codec {
namespace {

bool has_time(std::string_view line) {
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    line = line.substr(0, peeked_characters);
    for (std::size_t at = line.find(':'); at != std::string_view::npos; at = line.find(':', at + 1)) {
        if (at > 0 && at + 2 < line.size() && digit(line[at - 1]) && digit(line[at + 1]) && digit(line[at + 2]))
            return true;
    }
    return false;
}

/// Returns true if the line contains a day and a month like the dates of mbox files: "Mon Nov 23 16:21:57 2026".
bool is_date(std::string_view line) {
    constexpr std::array<std::string_view, 12> months = {" Jan ", " Feb ", " Mar ", " Apr ", " May ", " Jun ",
                                                         " Jul ", " Aug ", " Sep ", " Oct ", " Nov ", " Dec "};
    const std::string_view text = line.substr(0, peeked_characters);
    return std::any_of(months.begin(), months.end(),
                       [&](std::string_view month) { return text.find(month) != text.npos; });
}

}  // namespace

Position before_line_end(const LineCursor& cursor, Position at) {
    const Segment& segment = cursor.segment(at);
    const auto back = [&](char c) {
        if (at.offset <= segment.range.begin || segment.input[at.offset - 1] != c) return false;
        --at.offset;
        return true;
    };
    if (back('\n')) {
        if (back('\r')) back('\r');
    } else {
        back('\r');
    }
    return at;
}

bool is_behind_blank(const LineCursor& cursor, Position at) {
    const std::uint64_t first = cursor.segment(at).range.begin;
    if (at.offset == first) return true;
    const Position end = before_line_end(cursor, at);
    if (end.offset == first) return true;
    const char c = cursor.segment(at).input[end.offset - 1];
    return c == '\n' || c == '\r';
}

Position before_rule(const LineCursor& cursor, Position at) {
    constexpr std::size_t longest = 100;
    constexpr std::size_t shortest = 5;
    const Segment& segment = cursor.segment(at);
    const Position end = before_line_end(cursor, at);
    const std::size_t size = std::min<std::uint64_t>(end.offset - segment.range.begin, longest);
    std::string_view line = segment.input.substr(end.offset - size, size);
    line.remove_prefix(line.find_last_of("\r\n") + 1);
    const bool rule = line.size() >= shortest && line.size() < longest &&
                      std::string_view("=-_*#~+").find(line[0]) != line.npos &&
                      line.find_first_not_of(line[0]) == line.npos;
    return rule ? Position{at.segment, end.offset - line.size()} : at;
}

bool is_separator(const LineCursor& cursor, const Line& line) {
    if (!line.text.starts_with("From ")) return false;
    const bool timed = has_time(line.text);
    const bool spaced = is_behind_blank(cursor, line.begin);
    Line next;
    if ((!timed && !spaced) || !cursor.peek(line.next, peeked_characters, next)) return false;
    if (begins_message_header(next.text)) return true;
    return timed && !field_name(next.text).empty() && (spaced || is_date(line.text));
}

}  // namespace quill::codec
