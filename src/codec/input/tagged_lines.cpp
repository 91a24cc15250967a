#include "codec/input/tagged_lines.h"

#include "codec/input/lines.h"
#include "codec/mail/header_block.h"
#include "text/ascii.h"

#include <algorithm>

namespace quill::codec {
namespace {

constexpr std::size_t longest_header = std::size_t{64} << 10;
constexpr std::string_view white = " \t\r\n";

/// Returns true if `line` begins with a header of several fields, with tags between them and two after the last.
bool begins_with_tagged_header(std::string_view line) {
    line = line.substr(0, longest_header);
    unsigned fields = 0;
    for (std::size_t at = 0, end = 0; (end = find_tag(line, at)) < line.size(); at = end + line_tag.size()) {
        const std::string_view row = line.substr(at, end - at);
        if (row.empty()) return fields > 1;
        const bool folded = row.front() == ' ' || row.front() == '\t';
        if (fields == 0 && !begins_message_header(row)) return false;
        if (!folded && field_name(row).empty()) return false;
        fields += folded ? 0U : 1U;
    }
    return false;
}

}  // namespace

std::size_t find_tag(std::string_view text, std::size_t at) {
    while ((at = text.find('<', at)) != std::string_view::npos) {
        if (text::starts_with_ignoring_case(text.substr(at), line_tag)) return at;
        ++at;
    }
    return text.size();
}

std::string_view first_row(std::string_view text) {
    return text::trim(text.substr(0, find_tag(text.substr(0, find_line_end(text, 0)), 0)));
}

std::size_t pass_tags(std::string_view text, std::size_t& tags) {
    std::size_t at = 0;
    while (true) {
        at = std::min(text.find_first_not_of(white, at), text.size());
        if (!text::starts_with_ignoring_case(text.substr(at), line_tag)) return at;
        at += line_tag.size();
        ++tags;
    }
}

std::vector<Segment> tagged_lines(std::string_view input, const Range& range) {
    const std::string_view text = input.substr(range.begin, range.end - range.begin);
    const std::size_t first = std::min(text.find_first_not_of(white), text.size());
    if (!begins_with_tagged_header(text.substr(first, longest_header))) return {};
    const std::size_t end = find_line_end(text, first);
    if (text.find_first_not_of(white, end) != std::string_view::npos) return {};
    std::vector<Segment> rows;
    for (std::size_t at = first; at < end;) {
        if (rows.size() >= most_tagged_rows) return {};
        const std::size_t stop = find_tag(text.substr(0, end), at);
        rows.push_back({input, {range.begin + at, range.begin + stop, range.source, range.quote}});
        at = stop + line_tag.size();
    }
    return rows;
}

}  // namespace quill::codec
