#include "htx/html/html_reader.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace quill::htx {
namespace {

/// The names of U+00A0 to U+00FF, in order (HTML 4, 24.2.1).
constexpr std::array<std::string_view, 96> latin = {
    "nbsp",   "iexcl",  "cent",   "pound",  "curren", "yen",    "brvbar", "sect",   "uml",    "copy",   "ordf",
    "laquo",  "not",    "shy",    "reg",    "macr",   "deg",    "plusmn", "sup2",   "sup3",   "acute",  "micro",
    "para",   "middot", "cedil",  "sup1",   "ordm",   "raquo",  "frac14", "frac12", "frac34", "iquest", "Agrave",
    "Aacute", "Acirc",  "Atilde", "Auml",   "Aring",  "AElig",  "Ccedil", "Egrave", "Eacute", "Ecirc",  "Euml",
    "Igrave", "Iacute", "Icirc",  "Iuml",   "ETH",    "Ntilde", "Ograve", "Oacute", "Ocirc",  "Otilde", "Ouml",
    "times",  "Oslash", "Ugrave", "Uacute", "Ucirc",  "Uuml",   "Yacute", "THORN",  "szlig",  "agrave", "aacute",
    "acirc",  "atilde", "auml",   "aring",  "aelig",  "ccedil", "egrave", "eacute", "ecirc",  "euml",   "igrave",
    "iacute", "icirc",  "iuml",   "eth",    "ntilde", "ograve", "oacute", "ocirc",  "otilde", "ouml",   "divide",
    "oslash", "ugrave", "uacute", "ucirc",  "uuml",   "yacute", "thorn",  "yuml"};

struct Named {
    std::string_view name;
    char32_t character;
};

constexpr std::array<Named, 24> others = {{
    {"amp", '&'},      {"lt", '<'},       {"gt", '>'},       {"quot", '"'},      {"apos", '\''},    {"OElig", 0x152},
    {"oelig", 0x153},  {"Scaron", 0x160}, {"scaron", 0x161}, {"Yuml", 0x178},    {"ensp", 0x2002},  {"emsp", 0x2003},
    {"ndash", 0x2013}, {"mdash", 0x2014}, {"lsquo", 0x2018}, {"rsquo", 0x2019},  {"sbquo", 0x201A}, {"ldquo", 0x201C},
    {"rdquo", 0x201D}, {"bdquo", 0x201E}, {"bull", 0x2022},  {"hellip", 0x2026}, {"euro", 0x20AC},  {"trade", 0x2122},
}};

char32_t named(std::string_view name) {
    constexpr char32_t first_latin = 0xA0;
    const auto* const in_latin = std::find(latin.begin(), latin.end(), name);
    if (in_latin != latin.end()) return first_latin + static_cast<char32_t>(in_latin - latin.begin());
    const auto* const other =
        std::find_if(others.begin(), others.end(), [&](const Named& row) { return row.name == name; });
    return other != others.end() ? other->character : 0;
}

/// Returns the character of "#233" or "#xE9"; 0 if it is invalid. Numbers 128 to 159 mean Windows-1252, as in browsers.
char32_t numbered(std::string_view digits) {
    digits.remove_prefix(1);
    const bool hex = !digits.empty() && text::lower(digits.front()) == 'x';
    if (hex) digits.remove_prefix(1);
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, hex ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size()) return 0;
    const bool is_surrogate = number >= 0xD800 && number <= 0xDFFF;
    if (number == 0 || is_surrogate || number > 0x10FFFF) return 0xFFFD;
    if (number < 0x80 || number > 0x9F) return number;
    const char byte = static_cast<char>(number);
    const std::string utf8 = text::windows_1252_to_utf8({&byte, 1});
    std::string_view rest = utf8;
    return text::next_character(rest);
}

constexpr bool is_alphanumeric(char c) {
    return (c >= '0' && c <= '9') || (text::lower(c) >= 'a' && text::lower(c) <= 'z');
}

/// Appends the meaning of the reference at the front of `rest`, which begins with an ampersand, and removes it.
void decode_one(std::string_view& rest, std::string& out) {
    constexpr std::size_t longest = 10;
    std::size_t size = 1;
    while (size < rest.size() && size <= longest && (is_alphanumeric(rest[size]) || (size == 1 && rest[size] == '#')))
        ++size;
    const std::string_view name = rest.substr(1, size - 1);
    const char after = size < rest.size() ? rest[size] : '\0';
    const char32_t character = name.starts_with('#') ? numbered(name) : named(name);
    const bool ended = after == ';' || (!is_alphanumeric(after) && after != '=');
    if (character == 0 || !ended) {
        out += '&';
        rest.remove_prefix(1);
        return;
    }
    text::append_utf8(out, character);
    rest.remove_prefix(size + (after == ';' ? 1 : 0));
}

}  // namespace

std::string decode_references(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find('&'), text.size());
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (!text.empty()) decode_one(text, out);
    }
    return out;
}

}  // namespace quill::htx
