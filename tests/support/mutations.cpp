#include "support/mutations.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace quill::tests {
namespace {

using At = std::ptrdiff_t;

/// Returns the row that a change hits: mostly a row of data, sometimes any row.
std::size_t some_row(const Rows& rows, Random& random) {
    std::vector<std::size_t> data;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].kind == RowKind::data) data.push_back(i);
    }
    return data.empty() || random.once_in(8) ? random.below(rows.size()) : random.of(data);
}

/// Changes each row of data, or each row.
template <class Change>
void each_data(Rows& rows, Change&& change) {
    for (Row& row : rows) {
        if (row.kind == RowKind::data) change(row.text);
    }
}
template <class Change>
void each(Rows& rows, Change&& change) {
    for (Row& row : rows) change(row.text);
}

void insert(Rows& rows, std::size_t at, std::string_view text) {
    const Rows added = rows_of(RowKind::words, text);
    rows.insert(rows.begin() + static_cast<At>(std::min(at, rows.size())), added.begin(), added.end());
}

void erase(Rows& rows, std::size_t begin, std::size_t end) {
    rows.erase(rows.begin() + static_cast<At>(begin), rows.begin() + static_cast<At>(end));
}

/// Cuts row `at` into rows of at most `width` characters.
std::size_t wrap(Rows& rows, std::size_t at, std::size_t width) {
    while (rows[at].text.size() > width) {
        Row rest = rows[at];
        rest.text.erase(0, width);
        rows[at].text.resize(width);
        rows.insert(rows.begin() + static_cast<At>(++at), rest);
    }
    return at;
}

void replace_all(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

void escape_html(std::string& text) {
    replace_all(text, "&", "&amp;");
    replace_all(text, "<", "&lt;");
    replace_all(text, ">", "&gt;");
}

void lower(std::string& text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

void strip_blanks(std::string& text) {
    text.resize(text.find_last_not_of(' ') + 1);
}

void lose_row(Rows& rows, Random& random) {
    const std::size_t at = some_row(rows, random);
    erase(rows, at, std::min(rows.size(), at + (random.once_in(3) ? 1 + random.below(4) : 1)));
}
void double_row(Rows& rows, Random& random) {
    const std::size_t at = some_row(rows, random);
    const Row row = rows[at];
    rows.insert(rows.begin() + static_cast<At>(at), row);
}
void swap_rows(Rows& rows, Random& random) {
    const std::size_t at = some_row(rows, random);
    if (at + 1 < rows.size()) std::swap(rows[at], rows[at + 1]);
}
void cut_row(Rows& rows, Random& random) {
    std::string& text = rows[some_row(rows, random)].text;
    text.resize(std::min(text.size(), 1 + random.below(text.size())));
}
void lose_row_start(Rows& rows, Random& random) {
    std::string& text = rows[some_row(rows, random)].text;
    text.erase(0, random.below(text.size()));
}
void change_character(Rows& rows, Random& random) {
    constexpr std::string_view others = "ABCXYZabcxyz0189+/=`!#%'*,-. ~\xA0\xE4";
    std::string& text = rows[some_row(rows, random)].text;
    if (!text.empty()) text[random.below(text.size())] = random.of(others);
}
void lose_character(Rows& rows, Random& random) {
    std::string& text = rows[some_row(rows, random)].text;
    if (!text.empty()) text.erase(random.below(text.size()), 1);
}
void double_character(Rows& rows, Random& random) {
    std::string& text = rows[some_row(rows, random)].text;
    const std::size_t at = random.below(text.size());
    if (!text.empty()) text.insert(at, 1, text[at]);
}
void put_nul(Rows& rows, Random& random) {
    std::string& text = rows[some_row(rows, random)].text;
    if (!text.empty()) text[random.below(text.size())] = '\0';
}
void lose_start(Rows& rows, Random& random) {
    erase(rows, 0, some_row(rows, random));
    if (random.once_in(2)) rows[0].text.erase(0, random.below(rows[0].text.size()));
}
void lose_rest(Rows& rows, Random& random) {
    erase(rows, some_row(rows, random) + 1, rows.size());
    if (!random.once_in(2)) return;
    rows.back().text.resize(random.below(rows.back().text.size()));
    rows.back().end = "";
}
void lose_middle(Rows& rows, Random& random) {
    const std::size_t begin = some_row(rows, random);
    const std::size_t end = std::min(rows.size() - 1, begin + 1 + random.below(9));
    if (begin >= end) return;
    const std::string rest = rows[end].text.substr(random.below(rows[end].text.size()));
    rows[begin].text.resize(random.below(rows[begin].text.size()));
    rows[begin].text += rest;
    erase(rows, begin + 1, end + 1);
}
void cut_all(Rows& rows, Random& random) {
    constexpr std::array<std::size_t, 5> widths = {40, 59, 60, 72, 75};
    const std::size_t width = random.of(widths);
    each_data(rows, [width](std::string& text) { text.resize(std::min(text.size(), width)); });
}
void map_character(Rows& rows, Random& random) {
    constexpr std::array<std::string_view, 6> pairs = {"^~", "!|", "[(", "+ ", "\\/", "` "};
    const std::string_view pair = random.of(pairs);
    each_data(rows, [pair](std::string& text) { std::replace(text.begin(), text.end(), pair[0], pair[1]); });
}
void fold_blanks(Rows& rows, Random&) {
    each(rows, [](std::string& text) {
        const auto both_blank = [](char a, char b) { return a == ' ' && b == ' '; };
        text.erase(std::unique(text.begin(), text.end(), both_blank), text.end());
    });
}
void lose_ends(Rows& rows, Random&) {
    std::erase_if(rows, [](const Row& row) { return row.kind == RowKind::end; });
}
void lose_boundary(Rows& rows, Random& random) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].kind == RowKind::boundary) found.push_back(i);
    }
    if (found.empty()) return lose_ends(rows, random);
    const std::size_t at = random.once_in(2) ? found.back() : random.of(found);
    if (random.once_in(4)) {
        rows[at].text.insert(0, "  ");
    } else if (random.once_in(3) && at > 0) {
        rows[at - 1].text += rows[at].text;
        erase(rows, at, at + 1);
    } else {
        erase(rows, at, at + 1);
    }
}
void lose_padding(Rows& rows, Random&) {
    each_data(rows, [](std::string& text) { text.resize(text.find_last_not_of('=') + 1); });
}
void lower_row(Rows& rows, Random& random) {
    lower(rows[some_row(rows, random)].text);
}
void blank_latin1(Rows& rows, Random&) {
    each(rows, [](std::string& text) {
        std::replace_if(
            text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 128U) != 0; }, '?');
    });
}
void take_dots(Rows& rows, Random&) {
    each(rows, [](std::string& text) { text.erase(0, text.starts_with('.') ? 1 : 0); });
}
void lose_blank_line(Rows& rows, Random&) {
    const auto blank = std::find_if(rows.begin(), rows.end(), [](const Row& row) { return row.text.empty(); });
    if (blank != rows.end()) rows.erase(blank);
}

void wrap_row(Rows& rows, Random& random) {
    const std::size_t at = some_row(rows, random);
    wrap(rows, at, 1 + random.below(rows[at].text.size()));
}
void wrap_all(Rows& rows, Random& random) {
    constexpr std::array<std::size_t, 5> widths = {40, 58, 60, 64, 72};
    const std::size_t width = random.of(widths);
    for (std::size_t at = 0; at < rows.size(); ++at) {
        if (rows[at].kind == RowKind::data) at = wrap(rows, at, width);
    }
}
void join_row(Rows& rows, Random& random) {
    const std::size_t at = some_row(rows, random);
    if (at + 1 >= rows.size()) return;
    rows[at].text += rows[at + 1].text;
    erase(rows, at + 1, at + 2);
}
void join_all(Rows& rows, Random&) {
    for (std::size_t at = rows.size() - 1; at > 0; --at) {
        if (rows[at].kind != RowKind::data || rows[at - 1].kind != RowKind::data) continue;
        rows[at - 1].text += rows[at].text;
        erase(rows, at, at + 1);
    }
}
void put_words(Rows& rows, Random& random) {
    constexpr std::array<std::string_view, 9> words = {
        "\n",
        "Get your free mail at http://www.example.com/\n",
        "________________________________________\nSent by a list. To leave it, write to list@example.net\n",
        "X-Mailer: something 1.0\n",
        "Page 2 of 7\n",
        "\n-- \nAnn Other\n",
        "On Tue, 3 Mar 1998 Ann Other wrote:\n",
        "[continued]\n",
        "*** Warning: this message was checked ***\n"};
    const std::size_t at = some_row(rows, random);
    insert(rows, at, random.of(words));
}
void add_words(Rows& rows, Random& random) {
    constexpr std::array<std::string_view, 5> words = {" ", "  (more)", "ABCD", "X", " <BR>"};
    rows[some_row(rows, random)].text += random.of(words);
}
void strip_row_ends(Rows& rows, Random&) {
    each(rows, strip_blanks);
}
void pad_row_ends(Rows& rows, Random& random) {
    const std::size_t width = 1 + random.below(3);
    const std::string pad(width, random.once_in(3) ? '\t' : ' ');
    each(rows, [&pad](std::string& text) { text += pad; });
}
void put_tabs(Rows& rows, Random&) {
    each_data(rows, [](std::string& text) { std::replace(text.begin(), text.end(), ' ', '\t'); });
}
void end_in_nuls(Rows& rows, Random&) {
    each_data(rows, [](std::string& text) { text.push_back('\0'); });
}
void double_space(Rows& rows, Random&) {
    for (Row& row : rows) {
        if (row.kind != RowKind::head) row.end += row.end;
    }
}
void put_soft_breaks(Rows& rows, Random& random) {
    const bool reserved = random.once_in(2);
    for (std::size_t at = 0; at < rows.size(); ++at) {
        std::string& text = rows[at].text;
        replace_all(text, "=", "=3D");
        if (text.ends_with(' ')) text.replace(text.size() - 1, 1, "=20");
        if (reserved && rows[at].kind == RowKind::data) replace_all(text, "@", "=40");
        for (; rows[at].text.size() > 76; ++at) {
            std::size_t width = 75;
            while (rows[at].text.find('=', width - 2) < width) --width;
            Row rest = rows[at];
            rest.text.erase(0, width);
            rows[at].text.resize(width);
            rows[at].text += "=";
            rows.insert(rows.begin() + static_cast<At>(at) + 1, rest);
        }
    }
}
constexpr std::array<std::string_view, 5> marks = {"> ", ">", "| ", ": ", ">> "};
void quote_all(Rows& rows, Random& random) {
    const std::string_view mark = random.of(marks);
    each(rows, [mark](std::string& text) { text.insert(0, mark); });
}
void quote_some(Rows& rows, Random& random) {
    const std::string_view mark = random.of(marks);
    const std::size_t begin = some_row(rows, random);
    const std::size_t end = std::min(rows.size(), begin + 1 + random.below(6));
    for (std::size_t at = begin; at < end; ++at) {
        if (rows[at].kind != RowKind::head && rows[at].kind != RowKind::boundary) rows[at].text.insert(0, mark);
    }
}
void indent(Rows& rows, Random& random) {
    const std::string blanks = random.once_in(3) ? "\t" : std::string(1 + random.below(8), ' ');
    const bool all = random.once_in(2);
    for (Row& row : rows) {
        if (all || row.kind == RowKind::data) row.text.insert(0, blanks);
    }
}
void escape_all(Rows& rows, Random&) {
    each(rows, escape_html);
}
void make_page(Rows& rows, Random& random) {
    const bool breaks = random.once_in(2);
    each(rows, escape_html);
    if (breaks) each(rows, [](std::string& text) { text += "<br>"; });
    insert(rows, 0, breaks ? "<html><body>\n" : "<html><body><pre>\n");
    insert(rows, rows.size(), breaks ? "</body></html>\n" : "</pre></body></html>\n");
}
void stuff_dots(Rows& rows, Random&) {
    each(rows, [](std::string& text) { text.insert(0, text.starts_with('.') ? 1 : 0, '.'); });
}
void put_in_utf8(Rows& rows, Random&) {
    each(rows, [](std::string& text) {
        std::string out;
        for (const char c : text) {
            const auto byte = static_cast<unsigned char>(c);
            if (byte >= 128) out.push_back(static_cast<char>(192U | byte >> 6U));
            out.push_back(byte < 128 ? c : static_cast<char>(128U | (byte & 63U)));
        }
        text = out;
    });
}

void mix_line_ends(Rows& rows, Random& random) {
    constexpr std::array<std::string_view, 3> ends = {"\n", "\r\n", "\r"};
    const bool one = random.once_in(2);
    const std::string_view end = random.of(ends);
    for (Row& row : rows) {
        if (!row.end.empty()) replace_all(row.end, "\n", one ? end : random.of(ends));
    }
}
void put_in_utf16(Rows& rows, Random& random) {
    const bool little = random.once_in(2);
    const auto widen = [little](std::string& text) {
        std::string out;
        for (const char c : text) out += little ? std::string{c, '\0'} : std::string{'\0', c};
        text = out;
    };
    for (Row& row : rows) {
        widen(row.text);
        widen(row.end);
    }
    if (!random.once_in(3)) rows[0].text.insert(0, little ? "\xFF\xFE" : "\xFE\xFF");
}
void put_mark(Rows& rows, Random&) {
    rows[0].text.insert(0, "\xEF\xBB\xBF");
}

constexpr std::array all_mutations = {
    Mutation{"row-lost", Loss::bytes, lose_row},
    Mutation{"row-doubled", Loss::bytes, double_row},
    Mutation{"rows-swapped", Loss::bytes, swap_rows},
    Mutation{"row-cut", Loss::bytes, cut_row},
    Mutation{"row-start-lost", Loss::bytes, lose_row_start},
    Mutation{"character-changed", Loss::bytes, change_character},
    Mutation{"character-lost", Loss::bytes, lose_character},
    Mutation{"character-doubled", Loss::bytes, double_character},
    Mutation{"nul-in-row", Loss::bytes, put_nul},
    Mutation{"start-lost", Loss::bytes, lose_start},
    Mutation{"rest-lost", Loss::bytes, lose_rest},
    Mutation{"middle-lost", Loss::bytes, lose_middle},
    Mutation{"all-cut", Loss::bytes, cut_all},
    Mutation{"character-mapped", Loss::bytes, map_character},
    Mutation{"blanks-folded", Loss::bytes, fold_blanks},
    Mutation{"end-lost", Loss::bytes, lose_ends},
    Mutation{"boundary-lost", Loss::bytes, lose_boundary},
    Mutation{"padding-lost", Loss::bytes, lose_padding},
    Mutation{"row-lowered", Loss::bytes, lower_row},
    Mutation{"latin1-lost", Loss::bytes, blank_latin1},
    Mutation{"dots-lost", Loss::bytes, take_dots},
    Mutation{"blank-line-lost", Loss::bytes, lose_blank_line},
    Mutation{"row-wrapped", Loss::form, wrap_row},
    Mutation{"all-wrapped", Loss::form, wrap_all},
    Mutation{"row-joined", Loss::form, join_row},
    Mutation{"all-joined", Loss::form, join_all},
    Mutation{"words-between", Loss::form, put_words},
    Mutation{"words-added", Loss::form, add_words},
    Mutation{"blanks-stripped", Loss::form, strip_row_ends},
    Mutation{"blanks-added", Loss::form, pad_row_ends},
    Mutation{"tabs", Loss::form, put_tabs},
    Mutation{"nuls-at-end", Loss::form, end_in_nuls},
    Mutation{"double-spaced", Loss::form, double_space},
    Mutation{"soft-breaks", Loss::form, put_soft_breaks},
    Mutation{"quoted", Loss::form, quote_all},
    Mutation{"partly-quoted", Loss::form, quote_some},
    Mutation{"indented", Loss::form, indent},
    Mutation{"escaped", Loss::form, escape_all},
    Mutation{"page", Loss::form, make_page},
    Mutation{"dots-stuffed", Loss::form, stuff_dots},
    Mutation{"utf8", Loss::form, put_in_utf8},
    Mutation{"line-ends", Loss::units, mix_line_ends},
    Mutation{"utf16", Loss::units, put_in_utf16},
    Mutation{"utf8-mark", Loss::units, put_mark},
};

}  // namespace

std::span<const Mutation> mutations() {
    return all_mutations;
}

}  // namespace quill::tests
