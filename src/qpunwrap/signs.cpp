#include "qpunwrap/signs.h"

#include "codec/hex.h"
#include "text/ascii.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace quill::qpunwrap {
namespace {

struct Signs {
    std::int64_t strong = 0;       // almost certainly quoted-printable
    std::int64_t weak = 0;         // quoted-printable, or chance
    std::int64_t against = 0;      // characters that quoted-printable would have escaped
    std::int64_t full_breaks = 0;  // soft breaks where an encoder must make one
    std::int64_t lines = 0;        // non-empty lines
};

bool is_letter_or_digit(unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool is_upper_hex_digit(char c) {
    return codec::hex_value(c) >= 0 && !(c >= 'a' && c <= 'f');
}

/// Returns true if `s` is all hexadecimal digits, with none of the letters in lower case or all of them.
bool is_hex_number(std::string_view s) {
    const auto is_lower_hex_digit = [](char c) { return codec::hex_value(c) >= 0 && !(c >= 'A' && c <= 'F'); };
    return std::all_of(s.begin(), s.end(), is_upper_hex_digit) || std::all_of(s.begin(), s.end(), is_lower_hex_digit);
}

/// Returns true for a character of names that values are assigned to: in addresses, settings, programs.
bool is_name_character(char c) {
    return is_letter_or_digit(static_cast<unsigned char>(c)) || c == '_' || c == '-' || c == '.';
}

/// Removes the first line from `text` and returns it without its line end.
std::string_view take_line(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(line.size());
    text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<std::size_t>(text.size(), 1));
    return line;
}

bool is_header_line(std::string_view line) {
    const std::size_t colon = line.find(':');
    const std::string_view name = line.substr(0, colon);
    return colon != line.npos && colon > 0 && std::all_of(name.begin(), name.end(), is_name_character);
}

/// Returns `text` after its leading header lines; all of it if no empty line ends them.
std::string_view without_header(std::string_view text) {
    std::string_view rest = text;
    bool is_first = true;
    while (!rest.empty()) {
        const std::string_view line = take_line(rest);
        const bool goes_on = !is_first && (line.starts_with(' ') || line.starts_with('\t'));
        const bool opens_mailbox = is_first && line.starts_with("From ");
        if (!is_header_line(line) && !goes_on && !opens_mailbox) return line.empty() && !is_first ? rest : text;
        is_first = false;
    }
    return text;
}

bool is_escape_at(std::string_view line, std::size_t at) {
    return at < line.size() && line[at] == '=' && codec::hex_byte(line.substr(at + 1));
}

/// Returns true if the '=' at `at` assigns a value to a parameter of an address.
bool is_in_query(std::string_view line, std::size_t at) {
    std::size_t name = at;
    while (name > 0 && is_name_character(line[name - 1])) --name;
    return name > 0 && name < at && (line[name - 1] == '?' || line[name - 1] == '&');
}

/// Returns true if the '=' at `at` assigns a number to a name: one of three hexadecimal digits or more, a decimal one
/// above 79, or any on its own line.
bool is_setting(std::string_view line, std::size_t at) {
    const std::string_view name = text::trim(line.substr(0, at));
    const std::string_view rest = line.substr(at + 1);
    const std::string_view value = rest.substr(0, rest.find_first_of(" \t<>\"';,"));
    if (name.empty() || !is_name_character(name.back())) return false;
    if (!is_hex_number(value)) return false;
    const bool alone = value == rest && std::all_of(name.begin(), name.end(), is_name_character);
    const bool decimal = value.starts_with('8') || value.starts_with('9');
    return alone || value.size() > 2 || (decimal && value.find_first_not_of("0123456789") == value.npos);
}

/// Returns true if an encoder must escape `value`, at a line's end or elsewhere.
bool must_be_escaped(unsigned char value, bool at_line_end) {
    const bool blank = value == ' ' || value == '\t';
    return value > 0x7E || value == '\r' || value == '\n' || (blank && at_line_end);
}

void weigh_escape(std::string_view line, std::size_t at, unsigned char value, Signs& signs) {
    const std::string_view digits = line.substr(at + 1, 2);
    const bool other_control = value < ' ' && std::string_view("\t\r\n").find(static_cast<char>(value)) == digits.npos;
    if (value == '=') {
        ++signs.strong;
    } else if (is_in_query(line, at) || other_control) {
        ++signs.against;
    } else if (is_letter_or_digit(value)) {
        const bool saves_from_line = at == 0 && line.starts_with("=46rom ");
        if (!saves_from_line) ++signs.against;
    } else if (is_setting(line, at)) {
        return;
    } else if (!must_be_escaped(value, at + 3 == line.size())) {
        ++signs.weak;
    } else if (is_escape_at(line, at + 3) || (at >= 3 && is_escape_at(line, at - 3))) {
        ++signs.strong;
    } else {
        const bool upper = std::all_of(digits.begin(), digits.end(), is_upper_hex_digit);
        ++(upper ? signs.strong : signs.weak);
    }
}

/// Returns true if the line, which ends in '=', may end in padding of Base64.
bool may_be_padded(std::string_view line) {
    return line.size() % 4 == 0 && std::all_of(line.begin(), line.end(), [](char c) {
               return is_letter_or_digit(static_cast<unsigned char>(c)) || c == '+' || c == '/' || c == '=';
           });
}

void weigh_soft_break(std::string_view line, Signs& signs) {
    constexpr std::size_t longest = 77;  // RFC 2045 6.7, rule 5, and one for encoders that leave out the '='
    const bool full = line.size() <= longest && line.size() + 4 > longest && line.find(' ') != line.npos;
    if (full && !line.ends_with("==")) {
        ++signs.full_breaks;
    } else if (!may_be_padded(line)) {
        ++signs.weak;
    }
}

void weigh_line(std::string_view line, Signs& signs) {
    line = line.substr(0, line.find_last_not_of(" \t") + 1);
    if (!line.empty()) ++signs.lines;
    for (std::size_t at = line.find('='); at != line.npos; at = line.find('=', at + 1)) {
        if (at + 1 == line.size()) {
            weigh_soft_break(line, signs);
        } else if (const std::optional<unsigned char> value = codec::hex_byte(line.substr(at + 1))) {
            weigh_escape(line, at, *value, signs);
        } else {
            ++signs.against;
        }
    }
}

}  // namespace

bool holds_quoted_printable(std::string_view text) {
    constexpr std::int64_t telling = 3;  // so many weak signs are not chance
    Signs signs;
    for (std::string_view rest = without_header(text); !rest.empty();) weigh_line(take_line(rest), signs);
    // Some encoders break lines but do not escape other '='.
    if (signs.full_breaks >= telling && 4 * signs.full_breaks >= signs.lines) return true;
    const std::int64_t strong = signs.strong + signs.full_breaks;
    const bool enough = strong > 0 || signs.weak >= telling;
    return enough && 2 * strong + signs.weak > 3 * signs.against;
}

}  // namespace quill::qpunwrap
