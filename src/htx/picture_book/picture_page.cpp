#include "htx/picture_book/picture_page.h"

#include "htx/html/address.h"
#include "htx/html/html_reader.h"
#include "text/ascii.h"
#include "text/reader.h"
#include "text/utf8.h"
#include "text/writer.h"

#include <algorithm>
#include <array>

namespace quill::htx {
namespace {

struct SizeRow {
    int points;
    std::string_view tag;
};

constexpr std::array<SizeRow, 7> sizes = {{{8, "<font size=-2>"},
                                           {10, "<font size=-1>"},
                                           {12, ""},
                                           {14, "<font size=+1>"},
                                           {18, "<font size=+2>"},
                                           {24, "<font size=+3>"},
                                           {36, "<font size=+4>"}}};

std::string_view font_tag(int points) {
    const auto* const row =
        std::find_if(sizes.begin(), sizes.end(), [&](const SizeRow& r) { return r.points == points; });
    return row == sizes.end() ? std::string_view() : row->tag;
}

std::string hex_colour(const controls::Colour& colour) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string out = "#";
    for (const std::uint8_t part : {colour.red, colour.green, colour.blue}) {
        out.append(1, digits[part / 16U]).append(1, digits[part % 16U]);
    }
    return out;
}

std::string quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

/// Returns the text with references for characters beyond ASCII.
std::string in_ascii(std::string_view text) {
    const std::string utf8 = text::to_utf8(text);
    std::string out;
    for (std::string_view rest = utf8; !rest.empty();) {
        const char32_t character = text::next_character(rest);
        if (character < 0x80) {
            out += static_cast<char>(character);
        } else {
            out += "&#" + std::to_string(static_cast<unsigned>(character)) + ";";
        }
    }
    return out;
}

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (c == '<') {
            out += "&lt;";
        } else if (c == '&') {
            out += "&amp;";
        } else {
            out += c;
        }
    }
    return out;
}

std::string caption_text(std::string_view caption) {
    std::string out;
    text::Reader reader{text::Source(caption)};
    while (const auto line = reader.line()) out += *line;
    return in_ascii(out);
}

std::string caption_block(const PicturePage& page, const PageStyle& style) {
    const std::string_view font = font_tag(style.size);
    std::string out(font);
    if (style.bold) out += "<B>";
    if (style.italic) out += "<i>";
    out += caption_text(page.caption);
    if (style.italic) out += "</i>";
    if (style.bold) out += "</B>";
    if (!font.empty()) out += "</font>";
    return out;
}

std::string body_tag(const PageStyle& style) {
    if (!style.has_colours) return "<body>";
    return "<body text=" + quoted(hex_colour(style.foreground)) + " bgcolor=" + quoted(hex_colour(style.background)) +
           ">";
}

/// Returns the length of the tag at the beginning of `text`; 0 if there is none.
std::size_t tag_length(std::string_view text) {
    const std::size_t name = text.substr(1, 1) == "/" ? 2 : 1;
    const char first = name < text.size() ? text::lower(text[name]) : '\0';
    const std::size_t end = text.find_first_of("<>", 1);
    return first >= 'a' && first <= 'z' && end != std::string_view::npos && text[end] == '>' ? end + 1 : 0;
}

/// Returns the length of the character reference at the beginning of `text`; 0 if there is none.
std::size_t reference_length(std::string_view text) {
    constexpr std::size_t longest = 12;
    const std::size_t end = text.substr(0, longest).find(';');
    if (end == std::string_view::npos) return 0;
    const std::string_view reference = text.substr(0, end + 1);
    return decode_references(reference) == reference ? 0 : end + 1;
}

}  // namespace

std::string page_name(std::size_t number) {
    constexpr std::size_t digits = 4;
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text + ".htm";
}

bool is_plainly_markup(std::string_view text) {
    bool found = false;
    for (std::size_t at = 0; (at = text.find_first_of("<&", at)) != std::string_view::npos;) {
        const std::string_view rest = text.substr(at);
        const std::size_t length = rest.front() == '<' ? tag_length(rest) : reference_length(rest);
        if (length == 0) return false;
        found = true;
        at += length;
    }
    return found;
}

// Returns a title as one line; markup that would end its element is not treated as markup.
std::string title_text(std::string_view title) {
    std::string line(title);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    const bool ends_element = text::to_lower(line).find("</title") != std::string::npos;
    return in_ascii(is_plainly_markup(line) && !ends_element ? line : escaped(line));
}

std::string picture_page(const PicturePage& page, const PageStyle& style) {
    const std::string caption = caption_block(page, style);
    std::string out;
    text::append_line(out, "<html><head><title>");
    text::append_line(out, title_text(page.title));
    text::append_line(out, "</title></head>");
    text::append_line(out, body_tag(style) + "&nbsp;<br>&nbsp;");
    text::append_line(out, "<center><table COLS=1 WIDTH=" + quoted("80%") + " >");
    text::append_line(out, "<tr><td><center>");
    text::append_line(out, (page.caption_above ? caption : "") + "</center><BR><p></td></tr>");
    text::append_line(out, "<tr><td><center><img SRC=");
    text::append_line(out, quoted(encode_percents(text::to_utf8(page.picture))));
    text::append_line(out, "BORDER=0></center></td></tr>");
    text::append_line(out, "<tr><td><p><BR><p><center>");
    text::append_line(out, (page.caption_above ? "" : caption) + "</center></td></tr></table></center>");
    text::append_line(out, "<br>&nbsp;<br>&nbsp;</body></html>");
    return out;
}

}  // namespace quill::htx
