#include "codec/base64/base64_lines.h"
#include "codec/hex.h"
#include "codec/recovery/part_signs.h"
#include "codec/scan/text_scan.h"
#include "codec/uu/uu_line.h"
#include "text/ascii.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace quill::codec {
namespace {

constexpr unsigned sampled_lines = 8;
constexpr unsigned lines_to_resume = 3;
constexpr unsigned lines_behind_end = 6;
constexpr std::size_t passed_at_once = std::size_t{256} << 10;

/// The first line of a file: "begin 644 name", "begin-base64 644 name", "begin-base64-encoded 644 bmFtZQ==".
struct BeginLine {
    bool base64 = false;
    bool has_mode = false;  ///< three to six octal digits, as every encoder writes it
    std::string name;
};

std::string_view take_word(std::string_view& s) {
    s = text::trim(s);
    const std::string_view word = s.substr(0, s.find_first_of(" \t"));
    s = text::trim(s.substr(word.size()));
    return word;
}

bool is_mode(std::string_view word) {
    return word.size() >= 3 && word.size() <= 6 &&
           std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '7'; });
}

std::optional<BeginLine> read_begin(std::string_view line) {
    const std::string_view keyword = take_word(line);
    BeginLine out;
    const bool encoded_name = keyword == "begin-encoded" || keyword == "begin-base64-encoded";
    out.base64 = keyword.starts_with("begin-base64");
    if (keyword != "begin" && keyword != "begin-base64" && !encoded_name) return std::nullopt;
    std::string_view rest = line;
    out.has_mode = is_mode(take_word(rest));
    // Without a mode the name comes first; an invalid mode is skipped if more follows.
    if (!out.has_mode && rest.empty()) rest = line;
    if (rest.size() >= 2 && rest.starts_with('"') && rest.ends_with('"')) rest = rest.substr(1, rest.size() - 2);
    out.name = encoded_name ? decode_base64_text(rest) : std::string(rest);
    return out;
}

bool is_sure_begin(std::string_view line) {
    if (!sniff_begin(line)) return false;
    const std::optional<BeginLine> begin = read_begin(line.substr(0, peeked_characters));
    return begin && begin->has_mode;
}

/// How well the lines after `at` fit an alphabet.
struct Evidence {
    unsigned first_fits = 0;  ///< the very first line fits exactly
    unsigned fits = 0;
    unsigned stripped = 0;  ///< too short, as though blanks at its end were lost
    unsigned misfits = 0;
    bool ended = false;  ///< the end of the data was found
    bool even = true;    ///< all have one length character
};

Evidence weigh(const TextScan& scan, Position at, uu::Alphabet alphabet) {
    Evidence out;
    std::size_t first_bytes = 0;
    Line line;
    for (unsigned i = 0; i < sampled_lines && peek_text(scan, at, 3, line); ++i, at = line.next) {
        const uu::DataLine data = uu::judge(alphabet, line.text);
        out.ended = line.text == "end" || (data.fit != uu::Fit::none && data.bytes == 0);
        if (out.ended) break;
        if (i == 0) first_bytes = data.bytes;
        out.even = out.even && data.bytes == first_bytes;
        const bool stripped = data.clean && data.fit == uu::Fit::stripped;
        const bool good = data.clean && data.fit != uu::Fit::none && !stripped;
        if (stripped) ++out.stripped;
        if (good && i == 0) out.first_fits = 1;
        (good ? out.fits : out.misfits)++;
    }
    return out;
}

/// Returns true if the end of an empty file is at `at`: "`" or a blank line, then "end".
bool is_empty_file(const TextScan& scan, Position at) {
    Line line;
    if (!peek_text(scan, at, 3, line)) return false;
    if (line.text == "`" || line.text == "+") {
        if (!peek_text(scan, line.next, 3, line)) return false;
    }
    return line.text == "end";
}

/// Returns true if an empty xxencoded file ends at `at`. In uuencoded text a lone '+' would be a line of zeros that
/// lost its blanks, and the line of length 0, itself a blank or nothing, would precede "end".
bool is_empty_xx_file(const TextScan& scan, Position at) {
    Line line;
    return peek_text(scan, at, 3, line) && line.text == "+" && scan.cursor.peek(line.next, peeked_characters, line) &&
           line.text == "end";
}

std::optional<uu::Alphabet> tell_alphabet(const TextScan& scan, Position at, bool sure) {
    if (sure && is_empty_xx_file(scan, at)) return uu::Alphabet::xx;
    const Evidence as_uu = weigh(scan, at, uu::Alphabet::uu);
    const Evidence as_xx = weigh(scan, at, uu::Alphabet::xx);
    const bool xx = as_xx.fits > as_uu.fits;
    const Evidence& best = xx ? as_xx : as_uu;
    const bool all_stripped = as_uu.stripped > 0 && as_uu.misfits == as_uu.stripped &&
                              (as_uu.ended || (as_uu.even && as_uu.stripped == sampled_lines));
    if (sure && best.fits == 0 && all_stripped) return uu::Alphabet::uu;
    if (best.fits == 0 && !(sure && is_empty_file(scan, at))) return std::nullopt;
    if (!sure && (best.first_fits == 0 || best.misfits > best.fits)) return std::nullopt;
    return xx ? uu::Alphabet::xx : uu::Alphabet::uu;
}

/// Returns true if data continues within a few lines: an exact line, or the end of the data.
bool data_resumes(const TextScan& scan, Position at, uu::Alphabet alphabet) {
    Line line;
    for (unsigned i = 0; i < lines_to_resume && peek_text(scan, at, 3, line); ++i, at = line.next) {
        const uu::DataLine data = uu::judge(alphabet, line.text);
        const bool fits = data.fit == uu::Fit::exact || (data.fit == uu::Fit::extra && data.bytes == uu::full_line);
        if (line.text == "end" || (data.clean && fits)) return true;
    }
    return false;
}

/// Reads the lines of data from the cursor's position.
struct BodyEnd {
    Position end;               ///< after the last line of data
    bool ended = false;         ///< the line of length 0 or "end" was there
    bool end_line = false;      ///< "end" was there
    bool zero_line = false;     ///< the line of length 0 was there
    bool checked = false;       ///< the line of length 0 has a check character
    bool keeps_blanks = false;  ///< the line of length 0 shows that no blanks at the ends of lines were lost
};

/// Returns how many bytes at the beginning of `window` are lines, ended by LF, with the length stated by their length
/// character. A line that might be a boundary or the beginning of a message ends them.
std::size_t exact_lines(std::string_view window, uu::Alphabet alphabet) {
    std::size_t at = 0;
    std::size_t size = 0;  // of a line with the same length character as the last one
    for (char length = '\0'; at < window.size() && window[at] != '-' && window[at] != 'F';) {
        if (window[at] != length) {
            length = window[at];
            const int bytes = uu::value_of(alphabet, length);
            if (bytes <= 0) break;
            size = 1 + uu::characters_for(static_cast<std::size_t>(bytes));
        }
        const std::string_view line = window.substr(at, size + 2);
        const std::size_t end = line.find('\n');
        if (end == std::string_view::npos || end < size || (end > size && line[size] != '\r')) break;
        at += end + 1;
    }
    return at;
}

void pass_exact_lines(LineCursor& cursor, uu::Alphabet alphabet) {
    constexpr std::size_t longest_data_line = 128;
    while (true) {
        const std::string_view window = cursor.look_ahead(passed_at_once);
        const std::size_t passed = exact_lines(window, alphabet);
        if (passed > 0) cursor.pass_to(cursor.position().offset + passed);
        if (passed == 0 || window.size() - passed > longest_data_line || cursor.stopped()) return;
    }
}

/// Returns true for a line of one sign, such as "*****", that has not the length that it would state as data.
bool is_rule(const uu::DataLine& data, std::string_view text) {
    constexpr std::size_t shortest = 3;
    return data.fit == uu::Fit::stripped && text.size() >= shortest &&
           text.find_first_not_of(text.front()) == std::string_view::npos;
}

BodyEnd read_body(TextScan& scan, uu::Alphabet alphabet) {
    BodyEnd out;
    out.end = scan.cursor.position();
    Line line;
    while (true) {
        if (!out.ended && !scan.cursor.is_quoted()) {
            const Position before = scan.cursor.position();
            pass_exact_lines(scan.cursor, alphabet);
            if (before < scan.cursor.position()) out.keeps_blanks = false;
            out.end = std::max(out.end, scan.cursor.position());
        }
        const Position before = scan.cursor.position();
        if (!scan.cursor.next(line)) return out;
        const std::string_view text = text::trim(line.text);
        out.zero_line = out.zero_line || text.empty();
        if (line.text.empty()) continue;
        if (text == "end") {
            out.ended = out.end_line = true;
            return out;
        }
        if (!out.ended) out.keeps_blanks = text.empty() || text.find_first_not_of('`') == text.npos;
        if (text.empty()) continue;
        const uu::DataLine data = uu::judge(alphabet, line.text);
        const bool stops = scan.is_stop(line) || is_sure_begin(line.text) || begins_article(scan.cursor, line);
        if (!stops && data.fit != uu::Fit::none && data.bytes == 0) {
            out.ended = out.zero_line = true;
            out.checked = text.size() == 2;
            continue;
        }
        const bool is_data = data.clean && data.fit != uu::Fit::none && !out.ended && !is_rule(data, text);
        if (stops || (!is_data && (out.ended || !data_resumes(scan, line.next, alphabet)))) {
            scan.cursor.seek(before);
            return out;
        }
        out.end = line.next;
    }
}

std::optional<std::uint64_t> number_at(std::string_view s) {
    std::uint64_t n = 0;
    const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), n);
    return error == std::errc() && end != s.data() ? std::optional(n) : std::nullopt;
}

/// Reads what posting programs write after "end": "size 768", "sum -r/size 13047/768 entire input file".
void read_trailer(const TextScan& scan, Position at, Attachment& attachment) {
    Line line;
    for (unsigned i = 0; i < lines_behind_end && peek_text(scan, at, 3, line); ++i, at = line.next) {
        constexpr std::string_view sum_size = "sum -r/size ";
        if (line.text.starts_with("size ")) attachment.stated_size = number_at(line.text.substr(5));
        if (!line.text.starts_with(sum_size) || line.text.find("entire input file") == std::string_view::npos) continue;
        const std::string_view numbers = line.text.substr(sum_size.size());
        const std::size_t slash = numbers.find('/');
        if (slash == std::string_view::npos) continue;
        attachment.stated_size = number_at(numbers.substr(slash + 1));
        if (const auto sum = number_at(numbers); sum && *sum <= 0xFFFF) {
            attachment.stated_sum = static_cast<std::uint16_t>(*sum);
        }
    }
}

constexpr std::size_t most_lost_blanks = 3;  ///< at the end of a full line without a label

/// Returns true if `text` is a full line that lacks at most a few blanks at its end.
bool is_nearly_full(const uu::DataLine& data, std::string_view text) {
    return data.bytes == uu::full_line && text.size() + most_lost_blanks > data.expected;
}

/// Returns true if full lines of data begin at `line`: it is one, and another line of data follows. In a later part
/// that the text or the input's name announces, full lines may have any length.
bool is_run_of_lines(const TextScan& scan, const Line& line, uu::Alphabet alphabet) {
    const uu::DataLine first = uu::judge(alphabet, line.text);
    Line second;
    const bool full = first.bytes == uu::full_line || (scan.announces_later_part() && first.fit == uu::Fit::exact);
    if (!first.clean || first.bytes == 0 || !full || !peek_text(scan, line.next, 3, second)) return false;
    const uu::DataLine data = uu::judge(alphabet, second.text);
    const bool fits = data.fit == uu::Fit::exact || data.fit == uu::Fit::extra || is_nearly_full(data, second.text);
    return data.clean && fits && data.bytes > 0;
}

/// Returns true if `line` is all the data of a file's last part, or of a later part that the text announces: an exact
/// line with "end" after it, or with nothing.
bool is_lone_line(const TextScan& scan, const Line& line, uu::Alphabet alphabet) {
    const uu::DataLine data = uu::judge(alphabet, line.text);
    if (!data.clean || data.fit != uu::Fit::exact || data.bytes == 0) return false;
    Line next;
    if (!peek_text(scan, line.next, 3, next)) return scan.announces_later_part();
    const uu::DataLine last = uu::judge(alphabet, next.text);
    if (last.fit != uu::Fit::none && last.bytes == 0 && !peek_text(scan, next.next, 3, next)) return false;
    return next.text == "end";
}

/// Returns true where the row at `at` may have a check character, or have lost one that was a blank.
bool is_checked(const TextScan& scan, Position at, uu::Alphabet alphabet) {
    Line line;
    if (!peek_text(scan, at, 1, line)) return true;
    const uu::DataLine data = uu::judge(alphabet, line.text);
    return data.bytes == 0 || data.fit != uu::Fit::exact || data.blanks_after;
}

void finish_uu(TextScan& scan, FoundFile& file, uu::Alphabet alphabet, Position begin) {
    const BodyEnd body = read_body(scan, alphabet);
    file.attachment.format = alphabet == uu::Alphabet::uu ? Format::uu : Format::xx;
    file.attachment.body = scan.cursor.ranges(begin, body.end);
    file.attachment.keeps_blanks = body.keeps_blanks;
    file.has_end = body.ended;
    Line next;
    if (body.ended && scan.cursor.peek(scan.cursor.position(), peeked_characters, next) && !scan.is_stop(next) &&
        (is_run_of_lines(scan, next, alphabet) || (!body.end_line && is_lone_line(scan, next, alphabet)))) {
        file.attachment.problems.push_back({ProblemKind::doubtful_end, body.end.offset});
    }
    if (body.checked && !is_checked(scan, begin, alphabet)) {
        file.attachment.problems.push_back({ProblemKind::bad_check, begin.offset});
    }
    if (body.end_line && !body.zero_line && body.end == begin) {
        file.attachment.problems.push_back({ProblemKind::no_data, begin.offset});
    }
    if (body.end_line) {
        read_trailer(scan, scan.cursor.position(), file.attachment);
    } else if (body.ended) {
        file.attachment.problems.push_back({ProblemKind::missing_end_line, body.end.offset});
    }
}

/// Reads the lines of data at `begin`, and adds the file.
bool open_lines(TextScan& scan, FoundFile file, Position begin, bool sure) {
    const std::optional<uu::Alphabet> alphabet = tell_alphabet(scan, begin, sure);
    if (!alphabet) return false;
    file.label = std::exchange(scan.label, {});
    finish_uu(scan, file, *alphabet, begin);
    scan.add(std::move(file));
    return true;
}

/// Returns how many characters at the beginning of `line` mark it as quoted: "> ", ">>", "| > ".
std::size_t quote_size(std::string_view line) {
    constexpr std::size_t longest = 40;
    const std::size_t text = line.substr(0, longest).find_first_not_of(">|: \t");
    if (text == std::string_view::npos) return 0;
    return line.substr(0, text).find_first_of(">|:") == std::string_view::npos ? 0 : text;
}

}  // namespace

bool sniff_begin(std::string_view line) {
    return line.starts_with("begin") && line.size() > 6 && (line[5] == ' ' || line[5] == '-' || line[5] == '\t');
}

bool open_begin(TextScan& scan, const Line& line) {
    const std::optional<BeginLine> begin = read_begin(line.text.substr(0, peeked_characters));
    if (!begin) return false;
    FoundFile file;
    file.attachment.name = begin->name;
    if (begin->base64) return open_base64_lines(scan, std::move(file), begin->has_mode);
    return open_lines(scan, std::move(file), line.next, begin->has_mode);
}

bool sniff_quoted_begin(std::string_view line) {
    const std::size_t mark = quote_size(line);
    return mark > 0 && sniff_begin(line.substr(mark));
}

bool open_quoted_begin(TextScan& scan, const Line& line) {
    const std::size_t mark = quote_size(line.text);
    const std::optional<BeginLine> begin = read_begin(line.text.substr(mark, peeked_characters));
    if (!begin || !begin->has_mode || begin->base64) return false;
    FoundFile file;
    file.attachment.name = begin->name;
    file.attachment.problems.push_back({ProblemKind::quoted, line.begin.offset});
    scan.cursor.set_quote(line.text.substr(0, mark));
    const bool opened = open_lines(scan, std::move(file), line.next, true);
    scan.cursor.set_quote({});
    return opened;
}

bool sniff_bare_uu(std::string_view line) {
    const auto fits = [line](uu::Alphabet alphabet) {
        const int bytes = line.empty() ? 0 : uu::value_of(alphabet, line.front());
        if (bytes <= 0) return false;
        const std::size_t size = 1 + uu::characters_for(static_cast<std::size_t>(bytes));
        if (line.size() == size) return true;
        const bool may_have_lost_blanks = alphabet == uu::Alphabet::uu && line.size() + most_lost_blanks >= size;
        return static_cast<std::size_t>(bytes) == uu::full_line &&
               (line.size() == size + 1 || (line.size() < size && may_have_lost_blanks));
    };
    return fits(uu::Alphabet::uu) || fits(uu::Alphabet::xx);
}

namespace {

std::optional<uu::Alphabet> alphabet_of_bare(const TextScan& scan, const Line& line) {
    for (const uu::Alphabet alphabet : {uu::Alphabet::uu, uu::Alphabet::xx}) {
        if (is_run_of_lines(scan, line, alphabet)) return alphabet;
    }
    for (const uu::Alphabet alphabet : {uu::Alphabet::uu, uu::Alphabet::xx}) {
        if (is_lone_line(scan, line, alphabet)) return alphabet;
    }
    return std::nullopt;
}

}  // namespace

bool open_bare_uu(TextScan& scan, const Line& line) {
    const std::optional<uu::Alphabet> alphabet = alphabet_of_bare(scan, line);
    if (!alphabet) return false;
    FoundFile file;
    file.attachment.name = scan.label.file;
    file.label = std::exchange(scan.label, {});
    file.has_begin = false;
    finish_uu(scan, file, *alphabet, line.begin);
    scan.add(std::move(file));
    return true;
}

}  // namespace quill::codec
