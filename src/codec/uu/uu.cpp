#include "codec/uu/uu.h"

#include "codec/uu/alphabets.h"

#include <algorithm>
#include <array>

namespace quill::codec::uu {
namespace {

constexpr std::size_t line_bytes = 45;

using Values = std::array<std::int8_t, 256>;

constexpr Values make_values(std::string_view characters) {
    Values values{};
    values.fill(-1);
    std::int8_t value = 0;
    for (const char c : characters) values[static_cast<unsigned char>(c)] = value++;
    return values;
}

constexpr Values make_uu_values() {
    Values values = make_values(uu_characters);
    values[' '] = 0;
    return values;
}

constexpr Values uu_values = make_uu_values();
constexpr Values xx_values = make_values(xx_characters);

/// Returns the size of the line end at the beginning of `s`; 0 if there is none.
std::size_t line_end_at(std::string_view s) {
    if (s.starts_with('\n')) return 1;
    return s.starts_with("\r\n") ? 2 : 0;
}

char low_byte(unsigned bits) {
    return static_cast<char>(bits & 0xFFU);
}

unsigned byte_at(std::string_view s, std::size_t at) {
    return at < s.size() ? static_cast<unsigned char>(s[at]) : 0;
}

/// Decodes the groups of `characters` for `bytes` bytes; returns false at a foreign character.
bool decode_groups(const Values& values, std::string_view characters, std::size_t bytes, char* out) {
    std::size_t written = 0;
    for (std::size_t at = 0; at < characters.size(); at += 4) {
        unsigned bits = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            const int value = values[byte_at(characters, at + i)];
            if (value < 0) return false;
            bits = bits << 6U | static_cast<unsigned>(value);
        }
        for (unsigned shift = 24; shift > 0 && written < bytes; ++written)
            out[written] = low_byte(bits >> (shift -= 8));
    }
    return true;
}

}  // namespace

int value_of(Alphabet alphabet, char c) {
    return (alphabet == Alphabet::uu ? uu_values : xx_values)[static_cast<unsigned char>(c)];
}

char character_for(Alphabet alphabet, unsigned value) {
    return (alphabet == Alphabet::uu ? uu_characters : xx_characters)[value];
}

Progress decode_lines_reference(Alphabet alphabet, std::string_view in, char* out) {
    const Values& values = alphabet == Alphabet::uu ? uu_values : xx_values;
    Progress progress;
    while (progress.read < in.size()) {
        const std::string_view rest = in.substr(progress.read);
        const int length = values[byte_at(rest, 0)];
        if (length <= 0) break;
        const auto bytes = static_cast<std::size_t>(length);
        const std::size_t characters = (bytes + 2) / 3 * 4;
        if (rest.size() < 1 + characters) break;
        const std::size_t line_end = line_end_at(rest.substr(1 + characters));
        if (line_end == 0) break;
        if (!decode_groups(values, rest.substr(1, characters), bytes, out + progress.written)) break;
        progress.read += 1 + characters + line_end;
        progress.written += bytes;
    }
    return progress;
}

std::size_t encoded_size(std::size_t n) {
    constexpr std::size_t full_line = 1 + line_bytes / 3 * 4 + 2;
    const std::size_t rest = n % line_bytes;
    return n / line_bytes * full_line + (rest == 0 ? 0 : 1 + (rest + 2) / 3 * 4 + 2);
}

std::size_t encode_lines_reference(Alphabet alphabet, std::string_view in, char* out) {
    const char* const begin = out;
    while (!in.empty()) {
        const std::string_view line = in.substr(0, std::min(line_bytes, in.size()));
        in.remove_prefix(line.size());
        *out++ = character_for(alphabet, static_cast<unsigned>(line.size()));
        for (std::size_t at = 0; at < line.size(); at += 3) {
            const unsigned bits = byte_at(line, at) << 16U | byte_at(line, at + 1) << 8U | byte_at(line, at + 2);
            for (const unsigned shift : {18U, 12U, 6U, 0U}) *out++ = character_for(alphabet, bits >> shift & 63U);
        }
        *out++ = '\r';
        *out++ = '\n';
    }
    return static_cast<std::size_t>(out - begin);
}

}  // namespace quill::codec::uu
