#include "piles/part_formats.h"

#include <algorithm>
#include <array>

namespace quill::tests {
namespace {

/// Spreads `rows` over `parts` posts of about the same number of rows.
std::vector<PostBody> spread(const Rows& rows, std::size_t parts) {
    std::vector<PostBody> posts;
    for (std::size_t part = 0; part < parts; ++part) {
        const std::size_t begin = rows.size() * part / parts, end = rows.size() * (part + 1) / parts;
        posts.push_back({"", bytes_of({rows.begin() + static_cast<std::ptrdiff_t>(begin),
                                       rows.begin() + static_cast<std::ptrdiff_t>(end)})});
    }
    return posts;
}

std::vector<PostBody> framed(const std::string& first, std::vector<PostBody> posts, const std::string& last) {
    posts.front().text.insert(0, first);
    posts.back().text += last;
    return posts;
}

template <std::size_t full>
std::vector<PostBody> split_uu(std::string_view bytes, std::string_view name, std::size_t parts) {
    return framed("begin 644 " + std::string(name) + "\n", spread(sixbit_rows(uu_grave, bytes, full), parts),
                  "`\nend\n");
}
std::vector<PostBody> split_uu_stripped(std::string_view bytes, std::string_view name, std::size_t parts) {
    Rows rows = sixbit_rows(uu_blank, bytes);
    for (Row& row : rows) row.text.resize(row.text.find_last_not_of(' ') + 1);
    return framed("begin 644 " + std::string(name) + "\n", spread(rows, parts), "\nend\n");
}
template <std::size_t full>
std::vector<PostBody> split_xx(std::string_view bytes, std::string_view name, std::size_t parts) {
    return framed("begin 644 " + std::string(name) + "\n", spread(sixbit_rows(xx_alphabet, bytes, full), parts),
                  "+\nend\n");
}
std::vector<PostBody> split_base64(std::string_view bytes, std::string_view, std::size_t parts) {
    return spread(base64_rows(bytes), parts);
}
std::vector<PostBody> split_begin_base64(std::string_view bytes, std::string_view name, std::size_t parts) {
    return framed("begin-base64 644 " + std::string(name) + "\n", spread(base64_rows(bytes, 60), parts), "====\n");
}
std::string mime_fields(std::string_view name) {
    return "MIME-Version: 1.0\nContent-Type: application/octet-stream; name=\"" + std::string(name) +
           "\"\nContent-Transfer-Encoding: base64\n";
}
std::vector<PostBody> split_mime(std::string_view bytes, std::string_view name, std::size_t parts) {
    std::vector<PostBody> posts = spread(base64_rows(bytes), parts);
    for (PostBody& post : posts) post.fields = mime_fields(name);
    return posts;
}
std::vector<PostBody> split_partial(std::string_view bytes, std::string_view name, std::size_t parts) {
    std::vector<PostBody> posts = spread(base64_rows(bytes), parts);
    posts[0].text.insert(0, "Subject: " + std::string(name) + "\n" + mime_fields(name) + "\n");
    for (std::size_t part = 0; part < parts; ++part) {
        posts[part].fields = "MIME-Version: 1.0\nContent-Type: message/partial; id=\"" +
                             std::to_string(crc32_of(bytes)) + "@example.net\"; number=" + std::to_string(part + 1) +
                             "; total=" + std::to_string(parts) + "\n";
    }
    return posts;
}
template <bool whole_crc>
std::vector<PostBody> split_yenc(std::string_view bytes, std::string_view name, std::size_t parts) {
    std::vector<PostBody> posts;
    for (std::size_t part = 0; part < parts; ++part) {
        const std::size_t begin = bytes.size() * part / parts, end = bytes.size() * (part + 1) / parts;
        YencPart piece{name,         bytes.substr(begin, end - begin), begin,
                       bytes.size(), static_cast<unsigned>(part + 1),  static_cast<unsigned>(parts)};
        if (whole_crc) piece.whole_crc = crc32_of(bytes);
        posts.push_back({"", bytes_of(yenc_part(piece))});
    }
    return posts;
}

constexpr std::array all_formats = {
    PartFormat{"uu", false, true, split_uu<45>},      PartFormat{"uu-30", false, true, split_uu<30>},
    PartFormat{"uu-60", false, true, split_uu<60>},   PartFormat{"uu-stripped", false, true, split_uu_stripped},
    PartFormat{"xx", false, true, split_xx<45>},      PartFormat{"xx-30", false, true, split_xx<30>},
    PartFormat{"base64", false, false, split_base64}, PartFormat{"begin-base64", false, true, split_begin_base64},
    PartFormat{"mime", false, false, split_mime},     PartFormat{"partial", true, true, split_partial},
    PartFormat{"yenc", true, true, split_yenc<true>}, PartFormat{"yenc-pcrc", true, true, split_yenc<false>},
};

constexpr std::array all_habits = {
    Habit{"behind", true, "TITLE (N/T)"},
    Habit{"before", true, "(N/T) TITLE"},
    Habit{"brackets", true, "TITLE [0N/0T]"},
    Habit{"part-of", true, "TITLE part N of T"},
    Habit{"of", true, "TITLE (NofT)"},
    Habit{"count", true, "[1/1] - \"TITLE\" yEnc (N/T)"},
    Habit{"date", true, "TITLE (N/T) posted 2/5/98"},
    Habit{"quality", true, "TITLE 10/10 [N/T]"},
    Habit{"size", true, "TITLE 480/640 (0N/0T)"},
    Habit{"reply", true, "Re: TITLE (N/T)"},
    Habit{"part", false, "TITLE part N"},
    Habit{"Part", false, "TITLE Part0N"},
    Habit{"hash", false, "TITLE #N"},
    Habit{"file-of", true, "TITLE", "TITLE (N_T).txt"},
    Habit{"file-part", true, "TITLE", "TITLE_NofT.txt"},
    Habit{"file-number", false, "TITLE", "TITLE.00N"},
};

}  // namespace

std::span<const PartFormat> part_formats() {
    return all_formats;
}

std::span<const Habit> habits() {
    return all_habits;
}

std::string filled(std::string_view pattern, std::string_view title, std::size_t number, std::size_t total) {
    std::string out;
    const auto two_digits = [](std::size_t n) { return (n < 10 ? "0" : "") + std::to_string(n); };
    while (!pattern.empty()) {
        const bool whole_word = pattern.starts_with("TITLE");
        if (whole_word)
            out += title;
        else if (pattern.starts_with("0N"))
            out += two_digits(number);
        else if (pattern.starts_with("0T"))
            out += two_digits(total);
        else if (pattern[0] == 'N')
            out += std::to_string(number);
        else if (pattern[0] == 'T')
            out += std::to_string(total);
        else
            out.push_back(pattern[0]);
        pattern.remove_prefix(whole_word ? 5 : pattern.starts_with("0N") || pattern.starts_with("0T") ? 2 : 1);
    }
    return out;
}

}  // namespace quill::tests
