#include "codec/wrappings/line_signs.h"
#include "codec/wrappings/rows.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

namespace quill::codec {
namespace {

constexpr std::size_t longest_mark = 40;
constexpr std::size_t longest_looked_at = 1024;

constexpr bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Returns how many characters a program put at the beginning of `line`: marks of a quotation, perhaps with the
/// initials or the name of the author, and blanks.
std::size_t quote_size(std::string_view line) {
    line = line.substr(0, longest_mark);
    std::size_t size = 0;
    for (std::size_t at = 0; at < line.size(); at = size) {
        const std::size_t word = std::min(line.find_first_not_of(" \t", at), line.size());
        std::size_t sign = word;
        while (sign < line.size() && is_letter(line[sign])) ++sign;
        const std::string_view rest = line.substr(sign);
        // A colon alone may begin data; after a word it ends a field name.
        const bool marks = rest.starts_with('>') || (sign == word && (rest.starts_with("|") || rest.starts_with(": ")));
        if (!marks) break;
        size = sign + 1;
        if (size < line.size() && line[size] == ' ') ++size;
    }
    return size;
}

/// A mark before lines, as found on one of them.
struct Mark {
    std::string before;           ///< up to the number, or the whole mark
    std::string after;            ///< the part after the number
    std::uint64_t number = 0;     ///< of the first line; 0 if lines are not numbered
    bool only_after_gap = false;  ///< counts at the beginning of a text and after an empty line: else it folds a field
};

using ReadMark = std::optional<Mark> (*)(std::string_view line);

std::optional<Mark> read_quote(std::string_view line) {
    const std::size_t size = quote_size(line);
    if (size == 0) return std::nullopt;
    return Mark{std::string(line.substr(0, size)), {}, 0, false};
}

std::optional<Mark> read_indent(std::string_view line) {
    const std::size_t size = line.substr(0, longest_mark).find_first_not_of(" \t");
    if (size == 0 || size == std::string_view::npos) return std::nullopt;
    return Mark{std::string(line.substr(0, size)), {}, 0, true};
}

/// Reads digits, and blanks or a sign and blanks after them.
std::optional<Mark> read_number(std::string_view line) {
    constexpr std::size_t most_digits = 7;
    line = line.substr(0, longest_mark);
    const std::size_t begin = std::min(line.find_first_not_of(" \t"), line.size());
    const std::size_t end = std::min(line.find_first_not_of("0123456789", begin), line.size());
    if (end == begin || end - begin > most_digits) return std::nullopt;
    const bool sign = end < line.size() && std::string_view(":.)|").find(line[end]) != std::string_view::npos;
    const std::size_t blank = end + (sign ? 1U : 0U);
    const std::size_t text = std::min(line.find_first_not_of(" \t", blank), line.size());
    if (text == blank) return std::nullopt;
    std::uint64_t number = 0;
    for (const char digit : line.substr(begin, end - begin)) number = number * 10 + static_cast<unsigned>(digit - '0');
    if (number == 0) return std::nullopt;
    return Mark{{}, std::string(line.substr(end, text - end)), number, false};
}

/// Removes `mark` from `line`, the `index`th of its block; absent if it has another one. A line that lost the blanks at
/// its end has nothing after its mark.
std::optional<std::string_view> unmarked(const Mark& mark, std::uint64_t index, std::string_view line) {
    std::string before = mark.before;
    std::size_t blanks = 0;
    if (mark.number > 0) {
        blanks = std::min(line.find_first_not_of(" \t"), line.size());
        before = std::to_string(mark.number + index) + mark.after;
    }
    const std::string_view rest = line.substr(blanks);
    if (rest.starts_with(before)) return rest.substr(before.size());
    before.erase(before.find_last_not_of(" \t") + 1);
    if (!rest.starts_with(before) || rest.find_first_not_of(" \t", before.size()) != rest.npos) return std::nullopt;
    return line.substr(line.size());
}

/// Successive lines with the same mark.
struct Block {
    std::size_t size = 0;  ///< bytes
    bool wrapped = false;  ///< it shows that the mark does not belong to its data
};

Block read_block(const Mark& mark, std::string_view text) {
    Block out;
    std::size_t signs = 0;
    std::size_t rows = 0;
    std::size_t rows_with_mark = 0;
    std::string_view rest = text;
    for (std::uint64_t index = 0; !rest.empty(); ++index) {
        const TextLine line = next_line(rest);
        const std::optional<std::string_view> plain = unmarked(mark, index, line.text);
        if (!plain && (!line.text.empty() || mark.number > 0)) break;
        out.size = text.size() - rest.size();
        if (!plain) continue;
        signs += is_data_mark(plain->substr(0, longest_looked_at)) ? 1U : 0U;
        rows += is_full_row(*plain) ? 1U : 0U;
        rows_with_mark += is_full_row(line.text) ? 1U : 0U;
    }
    const std::size_t least = mark.before.size() > 1 ? 1 : 2;
    out.wrapped = rows + signs >= least && rows + 2 * signs > rows_with_mark;
    return out;
}

/// Returns the mark of the line at the beginning of `text`. The text after a mark may look like more of it: then the
/// next line has the shorter one.
std::optional<Mark> read_first(std::string_view text, ReadMark read_mark) {
    std::optional<Mark> mark = read_mark(next_line(text).text);
    if (!mark || text.empty()) return mark;
    std::optional<Mark> next = read_mark(next_line(text).text);
    const bool shorter = next && !next->before.empty() && mark->before.starts_with(next->before);
    return shorter ? next : mark;
}

/// Removes marks from all blocks of lines that show data.
void unmark(std::string_view text, ReadMark read_mark, PlainText& out) {
    bool after_gap = true;
    while (!text.empty() && !out.stopped()) {
        std::string_view rest = text;
        const TextLine first = next_line(rest);
        const std::optional<Mark> mark = read_first(text, read_mark);
        const bool counts = mark && (after_gap || !mark->only_after_gap);
        const Block block = counts ? read_block(*mark, text) : Block{text.size() - rest.size(), false};
        std::string_view lines = text.substr(0, block.size);
        text.remove_prefix(block.size);
        after_gap = first.text.find_first_not_of(" \t") == std::string_view::npos;
        if (!block.wrapped) {
            out.keep(lines);
            continue;
        }
        for (std::uint64_t index = 0; !lines.empty(); ++index) {
            const TextLine line = next_line(lines);
            out.keep(unmarked(*mark, index, line.text).value_or(line.text));
            out.keep(line.end);
        }
    }
}

/// Returns true if a line of the sample is data once its mark is removed.
bool shows_marks(const Sample& sample, ReadMark read_mark) {
    return sample.any([&](std::string_view window) {
        while (!window.empty()) {
            const std::string_view line = next_line(window).text.substr(0, longest_looked_at);
            const std::optional<Mark> mark = read_mark(line);
            if (!mark) continue;
            const std::string_view plain = unmarked(*mark, 0, line).value_or(line);
            if (is_full_row(plain) || is_data_mark(plain) || is_header_line(plain)) return true;
        }
        return false;
    });
}

}  // namespace

bool detect_quotes(const Sample& sample) {
    return shows_marks(sample, read_quote);
}

void unwrap_quotes(std::string_view wrapped, PlainText& out) {
    unmark(wrapped, read_quote, out);
}

bool detect_indents(const Sample& sample) {
    return shows_marks(sample, read_indent);
}

void unwrap_indents(std::string_view wrapped, PlainText& out) {
    unmark(wrapped, read_indent, out);
}

bool detect_numbers(const Sample& sample) {
    return shows_marks(sample, read_number);
}

void unwrap_numbers(std::string_view wrapped, PlainText& out) {
    unmark(wrapped, read_number, out);
}

}  // namespace quill::codec
