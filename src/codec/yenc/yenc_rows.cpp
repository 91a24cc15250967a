#include "codec/yenc/yenc_rows.h"

#include "codec/input/lines.h"

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

    /// Returns how many bytes the characters stand for: an escape and the character it escapes are one.
    std::size_t bytes() const {
        std::size_t bytes = 0;
        for (std::size_t at = 0; at < line.size(); ++at, ++bytes) {
            if (line[at] == '=' && at + 1 < line.size()) ++at;
        }
        return bytes;
    }

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
    return fits(row.characters()) || (row.dotted() && fits(row.characters() - 1));
}

bool has_bytes(const Row& row, std::uint64_t length) {
    const std::size_t bytes = row.bytes();
    return bytes == length || (row.dotted() && bytes - 1 == length);
}

/// Returns the last row where all rows before it fit, else nullopt. REQUIRES: `data` has a row.
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
    if (!last) return true;
    return last->characters() > characters + 1 + (last->dotted() ? 1 : 0) && last->bytes() > bytes;
}

}  // namespace quill::codec::yenc
