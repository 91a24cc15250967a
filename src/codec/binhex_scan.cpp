#include "codec/binhex.h"
#include "codec/charset.h"
#include "codec/text_scan.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace quill::codec {
namespace {

constexpr std::string_view banner = "(This file must be converted with BinHex";
constexpr std::size_t shortest_first_line = 32;
constexpr unsigned lines_to_first = 12;
constexpr unsigned lines_to_resume = 3;
constexpr std::size_t header_window = 512;

bool is_data(std::string_view s) {
    return std::all_of(s.begin(), s.end(), binhex::is_data_character);
}

/// The line of data at or behind `at` that begins with ':'.
std::optional<Line> find_first_line(const TextScan& scan, Position at) {
    Line line;
    for (unsigned i = 0; i < lines_to_first && peek_text(scan, at, 3, line); ++i, at = line.next) {
        const std::string_view text = text::trim(line.text);
        if (text.starts_with(':') && is_data(text.substr(1, text.find(':', 1) - 1))) return line;
    }
    return std::nullopt;
}

bool data_resumes(const TextScan& scan, Position at) {
    Line line;
    for (unsigned i = 0; i < lines_to_resume && peek_text(scan, at, 3, line); ++i, at = line.next) {
        const std::string_view text = text::trim(line.text);
        if (text.size() >= shortest_first_line && is_data(text.substr(0, text.find(':')))) return true;
    }
    return false;
}

struct BodyEnd {
    Position end;
    bool ended = false;  ///< the closing colon was there
};

/// Reads from `begin`, behind the opening colon, to the closing one.
BodyEnd read_body(TextScan& scan, Position begin) {
    BodyEnd out{begin, false};
    scan.cursor.seek(begin);
    Line line;
    while (scan.cursor.next(line)) {
        const std::string_view text = line.text;
        const auto foreign = std::find_if_not(text.begin(), text.end(), binhex::is_data_character);
        const auto at = static_cast<std::size_t>(foreign - text.begin());
        if (foreign != text.end() && *foreign == ':') {
            out.end = {line.begin.segment, line.begin.offset + at};
            out.ended = true;
            return out;
        }
        if (foreign != text.end() && !is_blank_line(text.substr(at)) &&
            (scan.is_stop(line) || !data_resumes(scan, line.next))) {
            scan.cursor.seek(line.begin);
            return out;
        }
        out.end = line.next;
    }
    return out;
}

FoundFile fork(const binhex::Header& header, std::vector<Range> body, bool resource) {
    FoundFile file;
    file.attachment.format = Format::binhex;
    file.attachment.body = std::move(body);
    file.attachment.resource_fork = resource;
    // Names in UTF-8 are not at home in this format, but written where it isn't either.
    file.attachment.name = text::is_utf8(header.name) ? header.name : to_utf8(header.name, "x-mac-roman");
    // A slash is a character like any other in a Macintosh name.
    std::replace(file.attachment.name.begin(), file.attachment.name.end(), '/', '_');
    if (resource) file.attachment.name += ".rsrc";
    if (header.crc_agrees) file.attachment.stated_size = resource ? header.resource_size : header.data_size;
    return file;
}

}  // namespace

bool sniff_binhex(std::string_view line) {
    return line.starts_with(banner) || (line.starts_with(':') && line.size() >= shortest_first_line) ||
           (line.starts_with(' ') && text::trim(line.substr(0, 256)).starts_with(banner));
}

bool open_binhex(TextScan& scan, const Line& line) {
    const std::optional<Line> first = find_first_line(scan, line.text.starts_with(':') ? line.begin : line.next);
    if (!first) return false;
    Position begin = first->begin;
    begin.offset += first->text.find(':') + 1;
    const std::string_view window = scan.cursor.rest(begin).substr(0, header_window);
    const std::optional<binhex::Header> header =
        binhex::read_header(binhex::decode_beginning(window, binhex::longest_header));
    if (!header || (line.text.starts_with(':') && !header->crc_agrees)) return false;
    const BodyEnd body = read_body(scan, begin);
    FoundFile data = fork(*header, scan.cursor.ranges(begin, body.end), false);
    data.has_end = body.ended;
    data.label = std::exchange(scan.label, {});
    scan.add(std::move(data));
    if (header->resource_size == 0) return true;
    FoundFile resource = fork(*header, scan.cursor.ranges(begin, body.end), true);
    resource.has_end = body.ended;
    scan.add(std::move(resource));
    return true;
}

}  // namespace quill::codec
