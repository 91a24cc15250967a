#include "htx/html/page_text.h"

#include "codec/mail/charset.h"
#include "htx/html/html_reader.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <optional>

namespace quill::htx {
namespace {

constexpr std::string_view blanks = " \t\n\r\f";
constexpr std::size_t searched = 4096;  // bytes in which to search for a declared character set

struct ByteOrderMark {
    std::string_view bytes;
    std::string_view charset;
};

constexpr std::array<ByteOrderMark, 3> marks = {
    {{"\xEF\xBB\xBF", "utf-8"}, {"\xFF\xFE", "utf-16le"}, {"\xFE\xFF", "utf-16be"}}};

/// Returns the word after `key` and an equals sign in `text`, with or without quotes; empty if there is none.
std::string_view declared(std::string_view text, std::string_view key) {
    for (std::size_t i = 0; i + key.size() < text.size(); ++i) {
        if (!text::starts_with_ignoring_case(text.substr(i), key)) continue;
        std::string_view rest = text.substr(i + key.size());
        rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
        if (!rest.starts_with('=')) continue;
        rest.remove_prefix(1);
        rest.remove_prefix(std::min(rest.find_first_not_of(" \t\n\r\f\"'"), rest.size()));
        return rest.substr(0, rest.find_first_of(" \t\n\r\f\"';>?"));
    }
    return {};
}

std::string_view charset_of_tags(std::string_view head) {
    HtmlReader reader(head);
    while (const std::optional<Token> token = reader.next()) {
        if (token->kind != TokenKind::start_tag || !token->is("meta")) continue;
        if (const auto charset = token->attribute("charset")) return *charset;
        const std::string_view content = token->attribute("content").value_or("");
        if (const std::string_view charset = declared(content, "charset"); !charset.empty()) return charset;
    }
    return {};
}

/// Returns the character set that the beginning of a text declares, as browsers interpret it: ISO 8859-1 is
/// Windows-1252, and a text that can be read as 8-bit is not UTF-16.
std::string declared_charset(std::string_view bytes) {
    const std::string_view head = bytes.substr(0, searched);
    std::string_view found;
    if (head.starts_with("<?xml")) found = declared(head.substr(0, head.find("?>")), "encoding");
    if (head.starts_with("@charset \"")) found = head.substr(10, head.find('"', 10) - 10);
    if (found.empty()) found = charset_of_tags(head);
    const std::string charset = text::to_lower(text::trim(found));
    if (charset == "iso-8859-1" || charset == "latin1" || charset == "us-ascii" || charset == "x-user-defined")
        return "windows-1252";
    return charset.starts_with("utf-16") || charset.starts_with("utf-32") ? "utf-8" : charset;
}

/// Recognises UTF-16 markup without a byte order mark: every other byte is zero. Returns its character set, or an empty
/// text.
std::string_view utf16_without_mark(std::string_view bytes) {
    if (bytes.size() < 4) return {};
    if (bytes[0] == '<' && bytes[1] == '\0' && bytes[3] == '\0') return "utf-16le";
    if (bytes[0] == '\0' && bytes[1] == '<' && bytes[2] == '\0') return "utf-16be";
    return {};
}

std::string run_together(std::string_view text) {
    std::string out;
    for (const char c : text) {
        const bool is_blank = blanks.find(c) != std::string_view::npos;
        if (!is_blank) out += c;
        if (is_blank && !out.empty() && out.back() != ' ') out += ' ';
    }
    if (out.ends_with(' ')) out.pop_back();
    return out;
}

/// Elements that stay within a line.
constexpr std::array<std::string_view, 34> inline_elements = {
    "a",    "abbr",  "acronym", "b",   "bdi", "bdo",    "big", "cite", "code", "del", "dfn",  "em",
    "font", "i",     "img",     "ins", "kbd", "label",  "map", "mark", "nobr", "q",   "ruby", "s",
    "samp", "small", "span",    "sub", "sup", "strong", "tt",  "u",    "var",  "wbr"};

bool breaks_line(const Token& token) {
    return std::none_of(inline_elements.begin(), inline_elements.end(), [&](auto name) { return token.is(name); });
}

}  // namespace

std::string decode_page(std::string_view bytes) {
    for (const ByteOrderMark& mark : marks) {
        if (bytes.starts_with(mark.bytes)) return codec::to_utf8(bytes.substr(mark.bytes.size()), mark.charset);
    }
    if (const std::string_view wide = utf16_without_mark(bytes); !wide.empty()) return codec::to_utf8(bytes, wide);
    return codec::to_utf8(bytes, declared_charset(bytes));
}

std::string title_of(std::string_view page) {
    HtmlReader reader(page);
    while (const std::optional<Token> token = reader.next()) {
        if (token->kind == TokenKind::raw_text && token->is("title"))
            return run_together(decode_references(token->text));
    }
    return {};
}

std::vector<std::string> lines_of_page(std::string_view page) {
    std::vector<std::string> lines;
    std::string line;
    const auto end_line = [&] {
        std::string text = run_together(line);
        if (!text.empty()) lines.push_back(std::move(text));
        line.clear();
    };
    HtmlReader reader(page);
    while (const std::optional<Token> token = reader.next()) {
        if (token->kind == TokenKind::text) {
            line += decode_references(token->text);
        } else if (token->kind == TokenKind::raw_text) {
            if (token->is("textarea") || token->is("xmp")) line += token->text;
        } else if (breaks_line(*token)) {
            end_line();
        }
    }
    end_line();
    return lines;
}

std::size_t LineCounter::line_at(std::size_t offset) {
    for (; at_ < std::min(offset, text_.size()); ++at_) {
        const bool ends =
            text_[at_] == '\n' || (text_[at_] == '\r' && (at_ + 1 == text_.size() || text_[at_ + 1] != '\n'));
        if (ends) ++line_;
    }
    return line_;
}

}  // namespace quill::htx
