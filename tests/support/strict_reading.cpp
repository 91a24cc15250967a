#include "support/strict_reading.h"

#include <algorithm>
#include <cstdlib>

namespace quill::tests {
namespace {

/// Returns the rows of data between `begin` and exactly the rows `end`; nullopt if there are none.
std::optional<std::span<const Row>> data_between(std::span<const Row> rows, std::string_view begin,
                                                 std::span<const std::string_view> end) {
    if (rows.size() < 1 + end.size() || !rows[0].text.starts_with(begin)) return {};
    const std::span<const Row> data = rows.subspan(1, rows.size() - 1 - end.size());
    const auto is_data = [](const Row& row) { return row.kind == RowKind::data; };
    const auto same = [](std::string_view text, const Row& row) { return row.text == text; };
    if (!std::all_of(data.begin(), data.end(), is_data)) return {};
    if (!std::equal(end.begin(), end.end(), rows.last(end.size()).begin(), same)) return {};
    return data;
}

/// Appends four characters as three bytes; returns false for a foreign character. Padding counts as zero bits.
bool append_groups(std::string& out, std::string_view alphabet, std::string_view text) {
    for (std::size_t at = 0; at + 4 <= text.size(); at += 4) {
        std::uint32_t group = 0;
        for (const char c : text.substr(at, 4)) {
            const std::size_t value = c == '=' && alphabet == base64_alphabet ? 0 : alphabet.find(c);
            if (value == std::string_view::npos) return false;
            group = group << 6U | static_cast<std::uint32_t>(value);
        }
        for (int shift = 16; shift >= 0; shift -= 8) out.push_back(static_cast<char>(group >> shift & 255U));
    }
    return text.size() % 4 == 0;
}

/// Reads rows with a length each: all full except the last. Some encoders leave old bits beyond the length.
std::optional<std::string> read_counted(std::optional<std::span<const Row>> data, std::string_view alphabet,
                                        bool checked = false) {
    if (!data) return {};
    std::string out;
    std::size_t full = 0;
    for (const Row& row : *data) {
        const bool last = &row == &data->back();
        std::string_view text = row.text;
        if (text.empty() || (checked && text.back() != check_character(text.substr(0, text.size() - 1)))) return {};
        if (checked) text.remove_suffix(1);
        const std::size_t length = text.empty() ? std::string_view::npos : alphabet.find(text[0]);
        if (length == std::string_view::npos || length == 0 || text.size() != 1 + (length + 2) / 3 * 4) return {};
        if (full == 0) full = length;
        if (length > full || (length != full && !last)) return {};
        const std::size_t before = out.size();
        if (!append_groups(out, alphabet, text.substr(1))) return {};
        out.resize(before + length);
    }
    return out;
}

/// Reads rows of one width except the last, padded only at the very end.
std::optional<std::string> read_padded(std::optional<std::span<const Row>> data) {
    if (!data) return {};
    std::string text;
    for (const Row& row : *data) {
        const std::size_t full = data->front().text.size();
        if (row.text.empty() || row.text.size() > full) return {};
        if (row.text.size() != full && &row != &data->back()) return {};
        text += row.text;
    }
    const std::size_t padding = std::min(text.size() - std::min(text.find('='), text.size()), text.size());
    std::string out;
    if (padding > 2 || !append_groups(out, base64_alphabet, text)) return {};
    out.resize(out.size() - padding);
    return out;
}

}  // namespace

char check_character(std::string_view row) {
    std::size_t sum = 0;
    for (const char c : row.substr(std::min<std::size_t>(row.size(), 1))) sum += uu_grave.find(c) % 64;
    return uu_grave[sum % 64];
}

std::optional<std::string> read_uu(std::span<const Row> rows) {
    return read_counted(data_between(rows, "begin ", std::array<std::string_view, 2>{"`", "end"}), uu_grave);
}

std::optional<std::string> read_uu_blank(std::span<const Row> rows) {
    return read_counted(data_between(rows, "begin ", std::array<std::string_view, 2>{" ", "end"}), uu_blank);
}

std::optional<std::string> read_uu_check(std::span<const Row> rows) {
    return read_counted(data_between(rows, "begin ", std::array<std::string_view, 2>{"``", "end"}), uu_grave, true);
}

std::optional<std::string> read_xx(std::span<const Row> rows) {
    return read_counted(data_between(rows, "begin ", std::array<std::string_view, 2>{"+", "end"}), xx_alphabet);
}

std::optional<std::string> read_base64(std::span<const Row> rows) {
    return read_padded(rows);
}

std::optional<std::string> read_begin_base64(std::span<const Row> rows) {
    return read_padded(data_between(rows, "begin-base64 ", std::array<std::string_view, 1>{"===="}));
}

std::optional<std::string> read_yenc_size(std::span<const Row> rows) {
    if (rows.size() < 2 || rows.back().kind != RowKind::end) return {};
    const auto data = data_between(rows, "=ybegin line=128 size=", std::array<std::string_view, 1>{rows.back().text});
    if (!data) return {};
    std::string out;
    for (const Row& row : *data) {
        const std::string& text = row.text;
        const bool full = text.size() == 128 || (text.size() == 129 && text[127] == '=');
        if (text.size() > 129 || (&row != &data->back() && !full)) return {};
        for (std::size_t at = 0; at < text.size(); ++at) {
            const bool escaped = text[at] == '=';
            if (escaped && ++at == text.size()) return {};
            out.push_back(static_cast<char>(static_cast<unsigned char>(text[at]) - (escaped ? 106U : 42U)));
        }
    }
    const std::string size = "size=" + std::to_string(out.size());
    const bool agree = rows[0].text.find(size + " ") != std::string::npos && rows.back().text == "=yend " + size;
    return agree ? std::optional(out) : std::nullopt;
}

std::optional<std::string> read_quoted_printable(std::span<const Row> rows) {
    std::string out;
    bool open = false;
    for (const Row& row : rows) {
        if (row.kind == RowKind::boundary || row.kind == RowKind::head) return {};
        const std::string text = row.text.substr(0, row.text.find_last_not_of(" \t") + 1);
        open = text.ends_with('=');
        for (std::size_t at = 0; at < text.size() - (open ? 1 : 0); ++at) {
            if (text[at] != '=') {
                out.push_back(text[at]);
                continue;
            }
            const std::string digits = text.substr(at + 1, 2);
            if (digits.size() < 2 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) return {};
            out.push_back(static_cast<char>(std::strtoul(digits.c_str(), nullptr, 16)));
            at += 2;
        }
        out += row.end.substr(open ? std::min<std::size_t>(row.end.size(), 1) : 0);
    }
    return open ? std::nullopt : std::optional(out);
}

std::optional<std::string> strict_reading(const Writing& writing, const Container& container, const Rows& rows,
                                          unsigned file) {
    if (writing.read == nullptr) return {};
    const auto of_file = [file](const Row& row) {
        return row.file == file &&
               (row.kind == RowKind::begin || row.kind == RowKind::data || row.kind == RowKind::end);
    };
    auto first = std::find_if(rows.begin(), rows.end(), of_file);
    auto last = std::find_if_not(first, rows.end(), of_file);
    if (writing.transfer == Transfer::quoted_printable) {  // all words are data
        const auto is_text = [&](const Row& row) { return of_file(row) || row.kind == RowKind::words; };
        while (first != rows.begin() && is_text(*std::prev(first))) --first;
        last = std::find_if_not(first, rows.end(), is_text);
    }
    if (std::any_of(last, rows.end(), of_file)) return {};
    const bool in_multipart = container.name == "multipart" || container.name == "two-parts";
    const bool stated = writing.transfer != Transfer::none && container.takes_fields;
    if (stated && in_multipart && (last == rows.end() || !last->text.starts_with("--=_b1"))) return {};
    std::span<const Row> own(first, last);
    // Without a header, only a short or padded row shows the end of Base64.
    if (writing.transfer == Transfer::base64 && !stated && own.size() > 1 &&
        own.back().text.size() == own.front().text.size() && !own.back().text.ends_with('=')) {
        return {};
    }
    return own.empty() && writing.transfer == Transfer::none ? std::nullopt : writing.read(own);
}

}  // namespace quill::tests
