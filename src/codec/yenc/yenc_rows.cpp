#include "codec/yenc/yenc_rows.h"

#include "codec/input/lines.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quill::codec::yenc {
namespace {

/// A row of yEnc text, without its line end.
struct Row {
    std::string_view line;

    std::size_t characters() const { return line.size(); }
    bool dotted() const { return line.starts_with(".."); }

    /// Returns how many bytes the characters encode: an escape and the character it escapes are one.
    std::size_t bytes() const {
        std::size_t bytes = 0;
        for (std::size_t at = 0; at < line.size(); ++at, ++bytes) {
            if (line[at] == '=' && at + 1 < line.size()) ++at;
        }
        return bytes;
    }

    /// Returns true where the last character is an escape, and what it escapes is lost.
    bool ends_in_escape() const { return line.ends_with('=') && !ends_in_pair(); }

    /// Returns true where the last two characters are an escape and what it escapes.
    bool ends_in_pair() const {
        if (line.size() < 2) return false;
        const std::string_view before = line.substr(0, line.size() - 1);
        const std::size_t other = before.find_last_not_of('=');
        const std::size_t escapes = before.size() - (other == std::string_view::npos ? 0 : other + 1);
        return escapes % 2 == 1;
    }
};

bool has_characters(const Row& row, std::uint64_t length) {
    const auto fits = [&](std::size_t n) { return n == length || (n == length + 1 && row.ends_in_pair()); };
    if (row.ends_in_escape()) return false;
    return fits(row.characters()) || (row.dotted() && fits(row.characters() - 1));
}

bool has_bytes(const Row& row, std::uint64_t length) {
    const std::size_t bytes = row.bytes();
    if (row.ends_in_escape()) return false;
    return bytes == length || (row.dotted() && bytes - 1 == length);
}

/// Returns the last row if all rows before it fit, else nullopt. REQUIRES: `data` has a row.
template <class Fits>
std::optional<Row> last_of_fitting_rows(std::string_view data, const Fits& fits) {
    std::size_t at = data.find_first_not_of("\r\n");
    while (true) {
        const std::size_t end = find_line_end(data, at);
        const std::size_t next = data.find_first_not_of("\r\n", end);
        const Row row{data.substr(at, end - at)};
        if (next == std::string_view::npos) return row;
        if (!fits(row)) return std::nullopt;
        at = next;
    }
}

bool is_line_end(char c) {
    return c == '\r' || c == '\n';
}

bool is_ended_at(std::string_view row_and_more, std::size_t size) {
    return row_and_more[size] == '\r' && row_and_more[size + 1] == '\n';
}

constexpr std::size_t most_more = 2;  // characters: a second dot, and one that an escape keeps in the row

/// Returns how much of a text is needed to accept its first row: the row, its line end and the next bytes.
std::size_t size_to_see(std::uint64_t length) {
    return length + most_more + 3;
}

/// Returns the size of the rows of `length` characters at the beginning of `text`, without the last ones; nullopt if a
/// row is different.
std::optional<std::size_t> size_of_rows(std::string_view text, std::uint64_t length) {
    std::size_t line_ends = 0;
    std::string_view rest = text;
    while (rest.size() >= size_to_see(length)) {
        std::size_t size = length;
        while (size < length + most_more && !is_ended_at(rest, size)) ++size;
        if (!is_ended_at(rest, size) || is_line_end(rest[size + 2])) return std::nullopt;
        const bool plain = size == length && rest[size - 1] != '=';
        if (!plain && !has_characters(Row{rest.substr(0, size)}, length)) return std::nullopt;
        rest.remove_prefix(size + 2);
        line_ends += 2;
    }
    const std::string_view rows = text.substr(0, text.size() - rest.size());
    return count_line_ends(rows) == line_ends ? std::optional(rows.size()) : std::nullopt;
}

}  // namespace

bool has_uneven_rows(std::string_view text, const Post& post) {
    const std::string_view data = text.substr(post.data_begin, post.data_end - post.data_begin);
    const std::size_t begin = data.find_first_not_of("\r\n");
    if (begin == std::string_view::npos) return false;
    const Row first{data.substr(begin, find_line_end(data, begin) - begin)};
    const std::uint64_t stated = post.begin.line.value_or(0);
    const std::uint64_t characters = has_characters(first, stated) ? stated : first.characters();
    const std::uint64_t bytes = has_bytes(first, stated) ? stated : first.bytes();

    std::optional<Row> last =
        last_of_fitting_rows(data, [&](const Row& row) { return has_characters(row, characters); });
    if (!last) last = last_of_fitting_rows(data, [&](const Row& row) { return has_bytes(row, bytes); });
    if (!last || last->ends_in_escape()) return true;
    return last->characters() > characters + 1 + (last->dotted() ? 1 : 0) && last->bytes() > bytes;
}

bool has_tabs_for_blanks(std::string_view text, const Post& post) {
    constexpr std::string_view escaped("\0\n\r=", 4);
    constexpr std::size_t hardly_by_chance = 6;  // tabs
    constexpr std::ptrdiff_t few = 4;            // characters that random data of a thousand bytes lacks
    std::array<std::size_t, 256> counts = {};
    for (const char c : text.substr(post.data_begin, post.data_end - post.data_begin)) {
        ++counts[static_cast<unsigned char>(c)];
    }
    if (counts[' '] > 0 || counts['\t'] < hardly_by_chance) return false;
    for (const char c : escaped) counts[static_cast<unsigned char>(c)] = 1;
    return std::count(counts.begin(), counts.end(), 0U) <= few;
}

/// Measures the first row of `piece`. Returns the bytes before it, or nullopt where it isn't whole.
std::optional<std::size_t> RowWatch::begin(std::string_view piece) {
    begun_ = true;
    const std::size_t begin = piece.find_first_not_of("\r\n");
    const std::size_t end = begin == std::string_view::npos ? begin : piece.find_first_of("\r\n", begin);
    if (end == std::string_view::npos) return std::nullopt;
    const Row first{piece.substr(begin, end - begin)};
    if (!has_characters(first, length_)) length_ = first.characters();
    return begin;
}

void RowWatch::take(std::string_view piece) {
    if (!even_ || piece.empty()) return;
    if (!begun_) {
        const std::optional<std::size_t> before = begin(piece);
        even_ = before.has_value();
        piece.remove_prefix(before.value_or(piece.size()));
    }
    // The rest of the last piece and the beginning of this one form whole rows.
    const std::size_t joined = std::min(piece.size(), 2 * size_to_see(length_));
    const std::size_t before = rest_.size();
    rest_.append(piece.substr(0, joined));
    const std::optional<std::size_t> first = size_of_rows(rest_, length_);
    even_ = even_ && first && (joined == piece.size() || *first >= before);
    if (!even_) return;
    if (joined == piece.size()) {
        rest_.erase(0, *first);
        return;
    }
    piece.remove_prefix(*first - before);
    const std::optional<std::size_t> others = size_of_rows(piece, length_);
    even_ = others.has_value();
    rest_ = piece.substr(others.value_or(0));
}

bool RowWatch::saw_even_rows() const {
    if (!even_ || rest_.find_first_not_of("\r\n") == std::string::npos) return false;
    const auto last = last_of_fitting_rows(rest_, [&](const Row& row) { return has_characters(row, length_); });
    return last && last->characters() <= length_ + 1 && !last->ends_in_escape();
}

}  // namespace quill::codec::yenc
