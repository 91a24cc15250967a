#include "codec/yenc_rows.h"

#include "codec/lines.h"

#include <algorithm>
#include <cstdint>

namespace quill::codec::yenc {
namespace {

/// How long a line is.
struct Row {
    std::size_t characters = 0;
    std::size_t bytes = 0;  ///< that it gives
    bool ends_in_pair = false;
    bool dotted = false;  ///< it begins with two dots, one of which may have been added
};

Row measure(std::string_view line) {
    Row row;
    row.characters = line.size();
    row.dotted = line.starts_with("..");
    for (std::size_t at = 0; at < line.size(); ++at, ++row.bytes) {
        const bool pair = line[at] == '=' && at + 1 < line.size();
        row.ends_in_pair = pair && at + 2 == line.size();
        if (pair) ++at;
    }
    return row;
}

bool has_characters(const Row& row, std::uint64_t length) {
    const auto fits = [&](std::size_t n) { return n == length || (row.ends_in_pair && n == length + 1); };
    return fits(row.characters) || (row.dotted && fits(row.characters - 1));
}

bool has_bytes(const Row& row, std::uint64_t length) {
    return row.bytes == length || (row.dotted && row.bytes - 1 == length);
}

}  // namespace

bool has_uneven_rows(std::string_view text, const Post& post) {
    const std::string_view data = text.substr(post.data_begin, post.data_end - post.data_begin);
    std::uint64_t characters = 0;
    std::uint64_t bytes = 0;
    bool by_characters = true;
    bool by_bytes = true;
    std::size_t next = 0;
    for (std::size_t at = 0; at < data.size() && (by_characters || by_bytes); at = next) {
        const std::size_t end = find_line_end(data, at);
        next = std::min(data.find_first_not_of("\r\n", end), data.size());
        if (end == at) continue;
        const Row row = measure(data.substr(at, end - at));
        if (characters == 0) {
            const std::uint64_t stated = post.begin.line.value_or(0);
            characters = has_characters(row, stated) ? stated : row.characters;
            bytes = has_bytes(row, stated) ? stated : row.bytes;
        }
        if (next == data.size()) return row.characters > characters + 1 + (row.dotted ? 1 : 0) && row.bytes > bytes;
        by_characters = by_characters && has_characters(row, characters);
        by_bytes = by_bytes && has_bytes(row, bytes);
    }
    return !by_characters && !by_bytes;
}

}  // namespace quill::codec::yenc
