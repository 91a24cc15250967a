#include "codec/wrappings/html_tokens.h"

#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace quill::codec {
namespace {

constexpr std::size_t longest_tag = 2000;
constexpr std::size_t longest_escape = 10;
constexpr std::size_t longest_comment = 1024;

struct KnownTag {
    std::string_view name;
    TagRole role;
    bool page = true;
};

// A page has many tags that could be confused with text in capitals; those without `page` also occur alone.
constexpr std::array known_tags = {
    KnownTag{"br", TagRole::line, false},    KnownTag{"p", TagRole::block, false},
    KnownTag{"b", TagRole::inside, false},   KnownTag{"i", TagRole::inside, false},
    KnownTag{"u", TagRole::inside, false},   KnownTag{"a", TagRole::inside, false},
    KnownTag{"s", TagRole::inside, false},   KnownTag{"q", TagRole::inside, false},
    KnownTag{"tt", TagRole::inside, false},  KnownTag{"em", TagRole::inside, false},
    KnownTag{"wbr", TagRole::inside, false}, KnownTag{"html", TagRole::block},
    KnownTag{"body", TagRole::block},        KnownTag{"pre", TagRole::block},
    KnownTag{"div", TagRole::block},         KnownTag{"table", TagRole::block},
    KnownTag{"tbody", TagRole::block},       KnownTag{"tr", TagRole::block},
    KnownTag{"td", TagRole::inside},         KnownTag{"th", TagRole::inside},
    KnownTag{"ul", TagRole::block},          KnownTag{"ol", TagRole::block},
    KnownTag{"li", TagRole::block},          KnownTag{"hr", TagRole::block},
    KnownTag{"h1", TagRole::block},          KnownTag{"h2", TagRole::block},
    KnownTag{"h3", TagRole::block},          KnownTag{"h4", TagRole::block},
    KnownTag{"blockquote", TagRole::block},  KnownTag{"center", TagRole::block},
    KnownTag{"span", TagRole::inside},       KnownTag{"font", TagRole::inside},
    KnownTag{"code", TagRole::inside},       KnownTag{"strong", TagRole::inside},
    KnownTag{"img", TagRole::inside},        KnownTag{"nobr", TagRole::inside},
    KnownTag{"small", TagRole::inside},      KnownTag{"big", TagRole::inside},
    KnownTag{"meta", TagRole::inside},       KnownTag{"link", TagRole::inside},
    KnownTag{"form", TagRole::block},        KnownTag{"main", TagRole::block},
    KnownTag{"section", TagRole::block},     KnownTag{"article", TagRole::block},
    KnownTag{"head", TagRole::hidden},       KnownTag{"title", TagRole::hidden},
    KnownTag{"style", TagRole::hidden},      KnownTag{"script", TagRole::hidden},
};

struct NamedEscape {
    std::string_view name;
    std::string_view bytes;
};

constexpr std::array named_escapes = {
    NamedEscape{"&lt;", "<"},   NamedEscape{"&gt;", ">"},   NamedEscape{"&amp;", "&"},   NamedEscape{"&quot;", "\""},
    NamedEscape{"&apos;", "'"}, NamedEscape{"&nbsp;", " "}, NamedEscape{"&grave;", "`"}, NamedEscape{"&num;", "#"},
};

bool is_letter(char c) {
    return text::lower(c) >= 'a' && text::lower(c) <= 'z';
}

/// Returns the size of the tag at the beginning of `text`, to the ">" outside quotes; 0 if it does not end.
std::size_t size_of_tag(std::string_view text) {
    char quote = '\0';
    for (std::size_t i = 1; i < std::min(text.size(), longest_tag); ++i) {
        const char c = text[i];
        if (c == '<') return 0;
        if (quote != '\0') {
            if (c == quote) quote = '\0';
        } else if ((c == '"' || c == '\'') && text[i - 1] == '=') {
            quote = c;
        } else if (c == '>') {
            return i + 1;
        }
    }
    return 0;
}

Tag read_declaration(std::string_view text) {
    constexpr std::string_view comment = "<!--";
    if (text.starts_with(comment)) {
        const std::size_t end = text.find("-->", comment.size());
        return end == std::string_view::npos ? Tag{} : Tag{TagRole::inside, false, true, "!--", end + 3};
    }
    const bool declares = text::starts_with_ignoring_case(text, "<!doctype") || text.starts_with("<?xml");
    const std::size_t size = declares ? size_of_tag(text) : 0;
    return size == 0 ? Tag{} : Tag{TagRole::block, false, true, "!", size};
}

Escape read_number(std::string_view text, std::size_t end) {
    const bool hex = text.size() > 2 && (text[2] == 'x' || text[2] == 'X');
    const std::string_view digits = text.substr(hex ? 3 : 2, end - (hex ? 3 : 2));
    unsigned value = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, hex ? 16 : 10);
    if (error != std::errc() || stop != digits.data() + digits.size() || value == 0 || value > 0x10FFFF) return {};
    Escape out{{}, end + 1, false};
    if (value == 0xA0) value = ' ';
    text::append_utf8(out.bytes, value);
    return out;
}

}  // namespace

Tag read_tag(std::string_view text) {
    if (text.size() < 3 || text[0] != '<') return {};
    if (text[1] == '!' || text[1] == '?') return read_declaration(text.substr(0, longest_comment));
    const std::size_t begin = text[1] == '/' ? 2 : 1;
    std::size_t end = begin;
    while (end < std::min<std::size_t>(text.size(), begin + 12) &&
           (is_letter(text[end]) || (end > begin && text[end] >= '1' && text[end] <= '6')))
        ++end;
    if (end >= text.size() || std::string_view(" \t\r\n/>").find(text[end]) == std::string_view::npos) return {};
    const std::string_view name = text.substr(begin, end - begin);
    const auto* const known = std::find_if(known_tags.begin(), known_tags.end(), [&](const KnownTag& tag) {
        return text::equal_ignoring_case(tag.name, name);
    });
    if (known == known_tags.end()) return {};
    const std::size_t size = size_of_tag(text);
    if (size == 0) return {};
    return {known->role, begin == 2, known->page, name, size};
}

Escape read_escape(std::string_view text) {
    const std::size_t end = text.substr(0, longest_escape).find(';');
    if (end == std::string_view::npos || end < 3) return {};
    if (text[1] == '#') return read_number(text, end);
    const std::string_view name = text.substr(0, end + 1);
    for (const NamedEscape& known : named_escapes) {
        if (known.name == name) return {std::string(known.bytes), name.size(), true};
    }
    return {};
}

bool has_named_escape(std::string_view text) {
    for (std::size_t at = 0; (at = text.find('&', at)) != std::string_view::npos; ++at) {
        if (read_escape(text.substr(at)).named) return true;
    }
    return false;
}

}  // namespace quill::codec
