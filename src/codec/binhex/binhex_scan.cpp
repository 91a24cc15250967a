#include "codec/binhex/binhex.h"
#include "codec/mail/charset.h"
#include "codec/mail/header_block.h"
#include "codec/recovery/part_label.h"
#include "codec/scan/text_scan.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quill::codec {
namespace {

constexpr std::string_view banner = "(This file must be converted with BinHex";
constexpr std::size_t shortest_first_line = 32;
constexpr unsigned lines_to_first = 12;
constexpr unsigned lines_to_resume = 3;
constexpr std::size_t header_window = 512;
constexpr std::size_t full_line = 64;
constexpr std::ptrdiff_t varied = 8;
constexpr unsigned most_left_out = 10'000;

bool is_data(std::string_view s) {
    return std::all_of(s.begin(), s.end(), binhex::is_data_character);
}

/// Returns the first line of data at or after `at` that begins with ':'.
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

struct BinHexBody {
    std::vector<Range> ranges;
    bool ended = false;  ///< the closing colon was found
};

/// Collects the ranges of a body, leaving out lines of other text.
class BodyRanges {
  public:
    BodyRanges(const TextScan& scan, Position begin) : scan_(scan), begin_(begin), end_(begin) {}

    void extend(Position end) { end_ = end; }

    /// In a body that is interrupted too often the lines stay; their characters are reported one by one.
    void leave_out(const Line& line) {
        if (++left_out_ > most_left_out) return extend(line.next);
        close();
        begin_ = end_ = line.next;
    }

    std::vector<Range> take() {
        close();
        return std::move(ranges_);
    }

  private:
    void close() {
        const std::vector<Range> more = scan_.cursor.ranges(begin_, end_);
        ranges_.insert(ranges_.end(), more.begin(), more.end());
    }

    const TextScan& scan_;
    Position begin_;
    Position end_;
    std::vector<Range> ranges_;
    unsigned left_out_ = 0;
};

/// Returns true for a separator line made of characters that could be data.
bool is_rule(std::string_view line) {
    return line.size() > 1 && line.find_first_not_of('-') == std::string_view::npos && line.size() < full_line;
}

/// Returns true for a line of data that was damaged in transit: only few of its characters are foreign.
bool is_damaged_data(std::string_view line) {
    const auto foreign =
        line.size() - static_cast<std::size_t>(std::count_if(line.begin(), line.end(), binhex::is_data_character));
    return line.size() >= full_line / 2 && foreign * 16 <= line.size();
}

/// Returns true if the line begins another file or the header of one.
bool begins_other_file(std::string_view line) {
    return sniff_begin(line) || sniff_quoted_begin(line) || sniff_yenc(line) || sniff_binhex(line) ||
           (text::starts_with_ignoring_case(line, "content-") && begins_message_header(line));
}

enum class Part : std::uint8_t { first, later };

/// Reads from `begin`, after the opening colon or at the beginning of a later part, to the closing colon.
BinHexBody read_body(TextScan& scan, Position begin, Part part) {
    BodyRanges body(scan, begin);
    bool ended = false;
    scan.cursor.seek(begin);
    Line line;
    while (!ended && scan.cursor.next(line)) {
        const std::string_view text = line.text;
        const auto foreign = std::find_if_not(text.begin(), text.end(), binhex::is_data_character);
        const auto at = static_cast<std::size_t>(foreign - text.begin());
        const bool clean = foreign == text.end() || is_blank_line(text.substr(at));
        const bool field = !clean && *foreign == ':' && at + 2 < text.size() && text[at + 1] == ' ';
        const bool other = !clean && (part == Part::later ? begins_other_file(text) : text.starts_with(banner));
        if (other || ((!clean || text.starts_with('-')) && scan.is_stop(line))) {
            scan.cursor.seek(line.begin);
            break;
        }
        if (!clean && *foreign == ':' && !field) {
            body.extend({line.begin.segment, line.begin.offset + at});
            ended = true;
        } else if (clean && !is_rule(text)) {
            body.extend(line.next);
        } else if (!clean && (read_part_label(text) || !data_resumes(scan, line.next))) {
            scan.cursor.seek(line.begin);
            break;
        } else if (!clean && is_damaged_data(text)) {
            body.extend(line.next);
        } else {
            body.leave_out(line);
        }
    }
    return {body.take(), ended};
}

bool is_full_line(std::string_view line) {
    line = text::trim(line);
    return line.size() == full_line && is_data(line);
}

bool is_last_line(std::string_view line) {
    line = text::trim(line);
    return line.size() > 1 && line.size() <= full_line + 1 && line.ends_with(':') &&
           is_data(line.substr(0, line.size() - 1));
}

/// Returns true unless the row has so few different characters that it is a drawing.
bool is_varied(std::string_view line) {
    std::string characters(line);
    std::sort(characters.begin(), characters.end());
    return std::unique(characters.begin(), characters.end()) - characters.begin() >= varied;
}

/// Returns true if full lines of data begin at `line`.
bool is_run_of_lines(const TextScan& scan, const Line& line) {
    Line next;
    return is_binhex_line(line.text) && peek_text(scan, line.next, 2, next) &&
           (is_full_line(next.text) || is_last_line(next.text));
}

/// Returns true if `line` is the only line of what its label announces as the last part of a file.
bool is_lone_line(const TextScan& scan, const Line& line) {
    if (scan.label.number < 2 || scan.label.number != scan.label.total || !is_last_line(line.text)) return false;
    Line next;
    return !peek_text(scan, line.next, 3, next) || next.text.starts_with('-');
}

FoundFile fork(const binhex::Header& header, std::vector<Range> body, bool resource) {
    FoundFile file;
    file.attachment.format = Format::binhex;
    file.attachment.body = std::move(body);
    file.attachment.resource_fork = resource;
    // Macintosh programs used the character set of their system, usually Mac Roman; others used UTF-8.
    file.name_guessed = !text::is_utf8(header.name);
    file.attachment.name = file.name_guessed ? to_utf8(header.name, "x-mac-roman") : header.name;
    // A slash is an ordinary character in a Macintosh name.
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

bool is_binhex_line(std::string_view line) {
    return is_full_line(line) && is_varied(line);
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
    BinHexBody body = read_body(scan, begin, Part::first);
    FoundFile data = fork(*header, body.ranges, false);
    data.has_end = body.ended;
    data.label = std::exchange(scan.label, {});
    scan.add(std::move(data));
    if (header->resource_size == 0) return true;
    FoundFile resource = fork(*header, std::move(body.ranges), true);
    resource.has_end = body.ended;
    scan.add(std::move(resource));
    return true;
}

bool sniff_bare_binhex(std::string_view line) {
    constexpr std::size_t blanks = 2;
    return line.size() <= full_line + 1 + blanks && (line.size() >= full_line || line.ends_with(':')) &&
           binhex::is_data_character(line.front());
}

// Only the first part identifies itself. A later one counts if the first one requires it, or if its label and many
// lines support it.
bool open_bare_binhex(TextScan& scan, const Line& line) {
    if (scan.in_armor || scan.tentative >= most_tentative) return false;
    if (!is_run_of_lines(scan, line) && !is_lone_line(scan, line)) return false;
    FoundFile file;
    file.attachment.name = scan.label.file;
    file.attachment.format = Format::binhex;
    file.label = scan.label;  // perhaps of what follows
    file.has_begin = false;
    file.tentative = true;
    BinHexBody body = read_body(scan, line.begin, Part::later);
    file.attachment.body = std::move(body.ranges);
    file.has_end = body.ended;
    scan.add(std::move(file));
    return true;
}

}  // namespace quill::codec
