#include "codec/input/lines.h"
#include "codec/scan/text_scan.h"
#include "codec/yenc/yenc_post.h"
#include "text/ascii.h"

#include <algorithm>
#include <utility>

namespace quill::codec {
namespace {

/// Returns true if another article or message begins at `line`, so that a post ends before it even if incomplete.
bool is_limit(const TextScan& scan, const Line& line, std::uint32_t segment) {
    if (line.begin.segment != segment) return true;
    if (line.text.starts_with("=y")) return yenc::parse_begin(line.text).has_value();
    const bool may_stop = line.text.starts_with("--") || line.text.starts_with("From ");
    return may_stop && scan.is_stop(line);
}

constexpr std::size_t least_looked_at = std::size_t{1} << 10U;
constexpr std::size_t most_looked_at = std::size_t{256} << 10U;
constexpr std::size_t enough_to_tell = 8;  ///< bytes of a line that decide whether it is relevant

/// Returns true if the line at the beginning of `text` could end a post or break it off.
bool is_of_interest(std::string_view text) {
    if (text.starts_with('.')) text.remove_prefix(1);
    return text.starts_with('\r') || text.starts_with('\n') || text.starts_with("=y") || text.starts_with("--") ||
           text.starts_with("From ");
}

/// Returns the beginning of the last line of `text` that has characters and a line end.
std::size_t last_line_beginning(std::string_view text) {
    const std::size_t line_end = text.find_last_of("\r\n");
    const std::size_t character = text.find_last_not_of("\r\n", line_end);
    return character == std::string_view::npos ? 0 : text.find_last_of("\r\n", character) + 1;
}

/// Skips lines of data up to a relevant one, or as far as `size` bytes allow. Returns how far.
std::size_t pass_data_lines(LineCursor& cursor, std::size_t size) {
    const std::string_view text = cursor.look_ahead(size);
    std::size_t at = 0;
    while (at < text.size() && !is_of_interest(text.substr(at))) at = find_line_beginning(text, at, "=-F.");
    if (at + enough_to_tell > text.size()) at = std::min(at, last_line_beginning(text));
    if (at > 0) cursor.pass_to(cursor.position().offset + at);
    return at;
}

/// Returns the end of the post whose first line is `line`: after its trailer. Without one the data are assumed to
/// continue to the first line that is empty or a single dot, as no line of data except the last is.
Position find_end(TextScan& scan, const Line& line) {
    Position end = line.next;
    std::optional<Position> breaks_off;
    std::size_t size = least_looked_at;
    Line next;
    while (scan.cursor.next(next) && !is_limit(scan, next, line.begin.segment)) {
        if (next.text.starts_with("=yend") && yenc::parse_end(next.text)) return next.next;
        if (!breaks_off && (next.text.empty() || next.text == ".")) breaks_off = next.begin;
        const std::size_t passed = pass_data_lines(scan.cursor, size);
        size = passed * 2 < size ? least_looked_at : std::min(2 * size, most_looked_at);
        end = scan.cursor.position();
    }
    return breaks_off.value_or(end);
}

/// Returns the name in `subject`: the text between quotes, else all of it except the word that names the format.
std::string name_in(std::string_view subject) {
    const std::size_t open = subject.find('"');
    const std::size_t close = subject.rfind('"');
    if (open != std::string_view::npos && close > open + 1) {
        return std::string(subject.substr(open + 1, close - open - 1));
    }
    subject = text::trim(subject);
    constexpr std::string_view format = "yenc";
    if (text::ends_with_ignoring_case(subject, format)) subject.remove_suffix(format.size());
    return std::string(text::trim(subject));
}

/// Adds the trailer of a post whose first line is lost, so that the loss shows. Text about yEnc rarely states a size
/// and a CRC.
bool open_trailer(TextScan& scan, const Line& line) {
    const std::optional<yenc::EndLine> end = yenc::parse_end(line.text);
    if (!end || !end->size || !(end->pcrc32 || end->crc32)) return false;
    FoundFile file;
    file.attachment.format = Format::yenc;
    file.attachment.body = scan.cursor.ranges(line.begin, line.next);
    file.attachment.name = name_in(scan.label.file);
    file.attachment.problems.push_back({ProblemKind::missing_begin, line.begin.offset});
    file.label = std::exchange(scan.label, {});
    scan.add(std::move(file));
    return true;
}

}  // namespace

bool sniff_yenc(std::string_view line) {
    return line.starts_with("=ybegin") || line.starts_with("=yend");
}

bool open_yenc(TextScan& scan, const Line& line) {
    const std::optional<yenc::BeginLine> begin = yenc::parse_begin(line.text);
    if (!begin) return open_trailer(scan, line);
    const Position end = find_end(scan, line);
    scan.cursor.seek(end);
    FoundFile file;
    file.attachment.format = Format::yenc;
    file.attachment.body = scan.cursor.ranges(line.begin, end);
    file.attachment.name = begin->name.empty() ? name_in(scan.label.file) : std::string(begin->name);
    file.label = std::exchange(scan.label, {});
    scan.add(std::move(file));
    return true;
}

}  // namespace quill::codec
