#include "codec/base64/base64_lines.h"
#include "codec/base64/sixbit.h"
#include "codec/hex.h"
#include "codec/mail/message_separator.h"
#include "codec/mail/mime_header.h"
#include "codec/recovery/content_name.h"
#include "codec/recovery/part_signs.h"
#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace quill::codec {
namespace {

constexpr std::size_t shortest_bare_line = 40;
constexpr std::size_t longest_bare_line = 1000;
constexpr unsigned lines_to_resume = 8;  // of other text
constexpr unsigned rows_to_resume = 64;  // of rows that are too short
constexpr std::size_t shortest_padded_line = 8;
constexpr std::size_t shortest_damaged_row = 20;
constexpr unsigned lines_for_evidence = 3;
constexpr unsigned hex_lines_for_evidence = 32;  // if the first ones could be hexadecimal, like rows of zeros
constexpr std::size_t first_bytes = 48;

constexpr std::array<bool, 256> make_table() {
    std::array<bool, 256> table{};
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"))
        table[static_cast<unsigned char>(c)] = true;
    return table;
}
constexpr std::array<bool, 256> in_alphabet = make_table();

/// Returns the line without blanks at its ends and without padding.
std::string_view characters_of(std::string_view line) {
    line = text::trim(line);
    for (int i = 0; i < 2 && line.ends_with('='); ++i) line.remove_suffix(1);
    return line;
}

/// Hashes and numbers in columns also consist of the alphabet.
bool is_hex(std::string_view s) {
    return std::all_of(s.begin(), s.end(), [](char c) { return hex_value(c) >= 0; });
}

/// Returns true if `line` and those after it can only be Base64: lines of the same length, not all of them hexadecimal,
/// or one whose first bytes are those of a known kind of file.
bool is_bare_base64(const TextScan& scan, const Line& line) {
    const std::string_view characters = characters_of(line.text);
    if (!is_base64_line(line.text)) return false;
    bool hex = is_hex(characters);
    if (!hex && !extension_for_bytes(decode_base64_text(line.text.substr(0, first_bytes / 3 * 4))).empty()) return true;
    if (characters.size() % 4 != 0) return false;
    Line next = line;
    for (unsigned i = 1; i < lines_for_evidence || (hex && i < hex_lines_for_evidence); ++i) {
        if (!peek_text(scan, next.next, 2, next) || !is_base64_line(next.text)) return false;
        if (next.text.size() != line.text.size()) return false;
        hex = hex && is_hex(characters_of(next.text));
    }
    return !hex;
}

}  // namespace

bool base64_resumes(const TextScan& scan, Position at) {
    Line line;
    for (unsigned i = 0; i < lines_to_resume && peek_text(scan, at, 3, line); ++i, at = line.next) {
        if (text::trim(line.text) == "====") return true;
        if (!is_base64_line(line.text)) continue;
        const std::string_view row = text::trim(line.text);
        const bool padded = row.ends_with('=') && row.size() % 4 == 0 && row.size() >= shortest_padded_line;
        if (row.size() >= shortest_bare_line || padded) return true;
    }
    return false;
}

std::string decode_base64_text(std::string_view encoded) {
    std::vector<char> room(sixbit::decoded_bound(encoded.size()) + 2);
    sixbit::State state;
    std::size_t size = sixbit::decode(sixbit::Alphabet::base64, encoded, room.data(), state).written;
    size += sixbit::finish(room.data() + size, state);
    return {room.data(), size};
}

bool is_base64_line(std::string_view line) {
    const std::string_view characters = characters_of(line);
    return !characters.empty() && std::all_of(characters.begin(), characters.end(),
                                              [](char c) { return in_alphabet[static_cast<unsigned char>(c)]; });
}

bool is_nearly_base64(std::string_view line) {
    const std::string_view row = text::trim(line);
    const auto foreign = std::count_if(row.begin(), row.end(),
                                       [](char c) { return c != '=' && !in_alphabet[static_cast<unsigned char>(c)]; });
    return row.size() >= 4 && row.front() != '=' && row.find_first_of(" \t") == std::string_view::npos &&
           static_cast<std::size_t>(foreign) * 4 <= row.size();
}

namespace {

/// Returns true where the very next line may be a row of the data that "====" has ended.
bool begins_with_row(const TextScan& scan, Position at) {
    Line line;
    if (!scan.cursor.peek(at, peeked_characters, line) || scan.is_stop(line) || !is_base64_line(line.text))
        return false;
    const std::string_view row = text::trim(line.text);
    return row.size() >= shortest_damaged_row || (row.ends_with('=') && row.size() % 4 == 0);
}

}  // namespace

bool open_base64_lines(TextScan& scan, FoundFile file, bool sure) {
    const Position begin = scan.cursor.position();
    Line line;
    if (!peek_text(scan, begin, 3, line)) return false;
    if (!is_base64_line(line.text) && !(sure && text::trim(line.text) == "====")) return false;
    Position end = begin;
    file.has_end = false;
    file.label = std::exchange(scan.label, {});
    while (true) {
        const Position before = scan.cursor.position();
        if (!scan.cursor.next(line)) break;
        if (text::trim(line.text) == "====") {
            file.has_end = true;
            if (begins_with_row(scan, line.next)) {
                file.attachment.problems.push_back({ProblemKind::doubtful_end, line.begin.offset});
            }
            break;
        }
        if (is_blank_line(line.text)) continue;
        const bool data = is_base64_line(line.text);
        const bool stops = scan.is_stop(line) || (!data && begins_article(scan.cursor, line));
        if (stops || (!data && !base64_resumes(scan, line.next))) {
            scan.cursor.seek(before);
            break;
        }
        end = line.next;
    }
    scan.base64_open = !file.has_end;
    file.attachment.format = Format::base64;
    file.attachment.body = scan.cursor.ranges(begin, end);
    scan.add(std::move(file));
    return true;
}

bool sniff_bare_base64(std::string_view line) {
    return line.size() >= shortest_bare_line && line.size() <= longest_bare_line &&
           in_alphabet[static_cast<unsigned char>(line[0])] && in_alphabet[static_cast<unsigned char>(line[1])] &&
           line.substr(0, shortest_bare_line).find(' ') == std::string_view::npos;
}

namespace {

bool is_one_character(std::string_view row) {
    return row.find_first_not_of(row.front()) == row.npos;
}

/// Returns true for letters of one case, except perhaps for the first, as in words of a language.
bool is_word(std::string_view text) {
    const auto is_small = [](char c) { return c >= 'a' && c <= 'z'; };
    const auto is_capital = [](char c) { return c >= 'A' && c <= 'Z'; };
    const bool letters = is_small(text.front()) || is_capital(text.front());
    return letters &&
           (std::all_of(text.begin() + 1, text.end(), is_small) || std::all_of(text.begin(), text.end(), is_capital));
}

/// Returns true if the line before rows of `width` characters may be another one: damaged, cut, or all zeros.
bool may_be_row(std::string_view line, std::size_t width) {
    const std::string_view row = characters_of(line);
    if (row.size() < shortest_damaged_row) return row.size() > 1 && is_base64_line(row) && !is_word(row);
    const auto foreign =
        std::count_if(row.begin(), row.end(), [](char c) { return !in_alphabet[static_cast<unsigned char>(c)]; });
    return (foreign <= 1 || is_nearly_base64(row)) && (!is_hex(row) || row.size() == width || is_one_character(row));
}

/// Returns true if the text before `at` may belong to the same Base64 text: the line before it, or one of the same
/// width in front of a few lines of other text, but not the header of another mail. Where the rows are double-spaced,
/// an empty line is between.
bool follows_row(const LineCursor& cursor, Position at, std::size_t width, bool spaced) {
    const Segment& segment = cursor.segment(at);
    for (unsigned lines = 0; lines < lines_to_resume; ++lines) {
        Position end = before_line_end(cursor, at);
        if (end.offset == at.offset) return false;
        const std::uint64_t from =
            std::max(segment.range.begin, end.offset - std::min(end.offset, std::uint64_t{longest_bare_line}));
        std::string_view row = segment.input.substr(from, end.offset - from);
        row = row.substr(row.find_last_of("\r\n") + 1);
        if (lines == 0 && !(spaced && row.empty()) && may_be_row(row, width)) return true;
        if (lines == 1 && spaced && may_be_row(row, width)) return true;
        if (is_base64_line(row) && !is_word(row)) return row.size() == width && !is_hex(row);
        if (!field_name(row).empty()) return false;
        end.offset -= row.size();
        at = end;
    }
    return false;
}

/// Rows of Base64 without a header, read one after another.
class BareRows {
  public:
    BareRows(TextScan& scan, const Line& first) : scan_(scan), width_(first.text.size()), last_(first) {}

    void read() {
        while (next_row() || resume() || damaged_row()) {
        }
        Line next;
        if (peek_text(scan_, last_.next, 2, next) && text::trim(next.text) == "====") {
            scan_.cursor.seek(next.next);
            ended_ = marked_ = true;
        }
    }

    Position end() const { return last_.next; }

    /// Returns true where "====" ends the rows, which a line that begins them goes with.
    bool marked() const { return marked_; }
    bool spaced() const { return spaced_; }

    /// Whether the last row shows that it is the last: it is shorter than the others, or padded.
    bool ended() const { return ended_ || !is_full(); }

  private:
    bool is_full() const { return last_.text.size() == width_ && !last_.text.ends_with('='); }
    void take(const Line& line) {
        last_ = line;
        first_ = false;
        scan_.cursor.seek(line.next);
    }

    bool next_row() {
        Line next;
        if (!is_full() || !peek_text(scan_, last_.next, spaced_ || first_ ? 2 : 1, next)) return false;
        if (next.text.size() > width_ || !is_base64_line(next.text)) return false;
        if (first_) spaced_ = next.begin != last_.next;
        take(next);
        return true;
    }

    /// Skips lines that are not rows, or follow padding, if a full row comes next. An empty line after a last row ends
    /// the file.
    bool resume() {
        Line next = last_;
        for (unsigned lines = 0, others = 0; lines < rows_to_resume && others < lines_to_resume; ++lines) {
            const Position at = next.next;
            if (!peek_text(scan_, at, 2, next) || (!is_full() && !spaced_ && next.begin != at)) return false;
            if (begins_article(scan_.cursor, next)) return false;
            const bool row = is_base64_line(next.text);
            if (!row) ++others;
            if (next.text.size() != width_ || !row) continue;
            take(next);
            return true;
        }
        return false;
    }

    bool damaged_row() {
        Line next;
        if (!is_full() || !scan_.cursor.peek(last_.next, peeked_characters, next) || scan_.is_stop(next)) return false;
        if (next.text.size() > width_ || !is_nearly_base64(next.text)) return false;
        take(next);
        ended_ = true;
        return false;
    }

    TextScan& scan_;
    std::size_t width_;
    Line last_;
    bool first_ = true;
    bool spaced_ = false;
    bool ended_ = false;
    bool marked_ = false;
};

}  // namespace

bool open_bare_base64(TextScan& scan, const Line& line) {
    if (scan.in_armor || !is_bare_base64(scan, line)) return false;
    BareRows rows(scan, line);
    rows.read();
    FoundFile file;
    file.label = std::exchange(scan.label, {});
    file.attachment.name = file.label.file;
    file.attachment.format = Format::base64;
    file.has_begin = file.label.number <= 1 && !scan.base64_open && !rows.marked() &&
                     !follows_row(scan.cursor, line.begin, line.text.size(), rows.spaced());
    file.has_end = file.label.number > 0 ? file.label.number == file.label.total : rows.ended();
    file.attachment.body = scan.cursor.ranges(line.begin, rows.end());
    scan.base64_open = !file.has_end;
    scan.add(std::move(file));
    return true;
}

}  // namespace quill::codec
