#include "codec/yenc/yenc.h"

#include <algorithm>

namespace quill::codec::yenc {
namespace {

constexpr unsigned shift = 42;         ///< added to every byte
constexpr unsigned escape_shift = 64;  ///< also added to a byte after '='

constexpr bool is_draft(Rules rules) {
    return rules == Rules::draft || rules == Rules::draft_dotted;
}

constexpr bool drops_dots(Rules rules) {
    return rules == Rules::dotted || rules == Rules::draft_dotted;
}

/// The bytes of a text by position. Reads past the end give -1, which equals no byte.
class Bytes {
  public:
    Bytes(std::string_view in, unsigned char previous) : in_(in), previous_(previous) {}

    int at(std::size_t i) const { return i < in_.size() ? static_cast<unsigned char>(in_[i]) : -1; }
    int before(std::size_t i) const { return i == 0 ? previous_ : at(i - 1); }

  private:
    std::string_view in_;
    int previous_;
};

bool starts_line(Rules rules, const Bytes& bytes, std::size_t i) {
    const int before = bytes.before(i);
    return before == '\n' || (is_draft(rules) && before == '\r');
}

bool is_end_marker(Rules rules, const Bytes& bytes, std::size_t i) {
    if (bytes.at(i + 1) != 'y') return false;
    if (is_draft(rules)) return starts_line(rules, bytes, i);
    return bytes.at(i + 2) == 'e' && bytes.at(i + 3) == 'n';
}

/// Returns how many bytes at `i` are not data: parts of a line end, blanks before one, a dot before a dot.
std::size_t bytes_passed_over(Rules rules, const Bytes& bytes, std::size_t i) {
    const int c = bytes.at(i);
    if (c == '.') return drops_dots(rules) && starts_line(rules, bytes, i) && bytes.at(i + 1) == '.' ? 1 : 0;
    if (is_draft(rules)) return c == '\r' || c == '\n' ? 1 : 0;
    if (c == '\r') return bytes.at(i + 1) == '\n' ? 2 : 0;
    const bool two_blanks = c == ' ' && bytes.at(i + 1) == ' ';
    return two_blanks && bytes.at(i + 2) == '\r' && bytes.at(i + 3) == '\n' ? 4 : 0;
}

/// Returns `c` minus the number that the encoder added, modulo 256.
char plain_byte(int c, unsigned added) {
    return static_cast<char>((static_cast<unsigned>(c) - added) & 0xFFU);
}

}  // namespace

Progress decode_reference(Rules rules, std::string_view in, unsigned char previous, bool last, char* out) {
    const Bytes bytes(in, previous);
    const std::size_t kept_back = last ? 0 : look_ahead;
    Progress progress;
    std::size_t& i = progress.read;
    while (i + kept_back < in.size()) {
        const int c = bytes.at(i);
        if (const std::size_t passed = bytes_passed_over(rules, bytes, i); passed != 0) {
            i += passed;
        } else if (c != '=') {
            out[progress.written++] = plain_byte(c, shift);
            i += 1;
        } else if (is_end_marker(rules, bytes, i)) {
            progress.ended = true;
            break;
        } else if (!is_draft(rules) && bytes.at(i + 1) == 'y') {
            out[progress.written++] = plain_byte('y', shift);
            i += 1;
        } else if (const int escaped = bytes.at(i + 1); escaped >= 0) {
            out[progress.written++] = plain_byte(escaped, shift + escape_shift);
            i += 2;
        } else {
            i += 1;
        }
    }
    return progress;
}

std::size_t encoded_bound(std::size_t n, std::size_t line_length) {
    const std::size_t characters = 2 * n;
    const std::size_t line_ends = characters / std::max<std::size_t>(line_length, 1) + 1;
    return characters + 2 * line_ends + 64;
}

std::size_t encode_reference(std::string_view in, std::size_t line_length, Column& column, char* out) {
    const char* const begin = out;
    for (const char byte : in) {
        const unsigned c = (static_cast<unsigned char>(byte) + shift) & 0xFFU;
        const bool critical = c == 0 || c == '\n' || c == '\r' || c == '=';
        if (critical) *out++ = '=';
        *out++ = static_cast<char>(critical ? c + escape_shift : c);
        column.characters += critical ? 2 : 1;
        if (column.characters < line_length) continue;
        *out++ = '\r';
        *out++ = '\n';
        column.characters = 0;
    }
    return static_cast<std::size_t>(out - begin);
}

}  // namespace quill::codec::yenc
