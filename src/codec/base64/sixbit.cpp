#include "codec/base64/sixbit.h"

#include "codec/uu/alphabets.h"

#include <array>

namespace quill::codec::sixbit {
namespace {

constexpr std::uint8_t blank = 0xFE;    ///< skipped
constexpr std::uint8_t foreign = 0xFF;  ///< ends the run

using Values = std::array<std::uint8_t, 256>;

constexpr Values make_values(std::string_view characters) {
    Values values{};
    values.fill(foreign);
    for (const char c : {'\r', '\n', ' ', '\t'}) values[static_cast<unsigned char>(c)] = blank;
    std::uint8_t value = 0;
    for (const char c : characters) values[static_cast<unsigned char>(c)] = value++;
    return values;
}

constexpr Values base64_values = make_values(base64_characters);
constexpr Values binhex_values = make_values(binhex_characters);

constexpr std::uint32_t byte_of(std::string_view s, std::size_t at) {
    return static_cast<unsigned char>(s[at]);
}

char low_byte(std::uint32_t bits) {
    return static_cast<char>(bits & 0xFFU);
}

char base64_character(std::uint32_t bits) {
    return base64_characters[bits & 63U];
}

/// Writes one group of one to three bytes, padded.
char* encode_group(std::string_view bytes, char* out) {
    const std::size_t n = bytes.size();
    const std::uint32_t bits =
        byte_of(bytes, 0) << 16U | (n > 1 ? byte_of(bytes, 1) << 8U : 0) | (n > 2 ? byte_of(bytes, 2) : 0);
    *out++ = base64_character(bits >> 18U);
    *out++ = base64_character(bits >> 12U);
    *out++ = n > 1 ? base64_character(bits >> 6U) : '=';
    *out++ = n > 2 ? base64_character(bits) : '=';
    return out;
}

char* end_line(char* out) {
    *out++ = '\r';
    *out++ = '\n';
    return out;
}

}  // namespace

Progress decode_reference(Alphabet alphabet, std::string_view in, char* out, State& state) {
    const Values& values = alphabet == Alphabet::base64 ? base64_values : binhex_values;
    Progress progress;
    for (; progress.read < in.size(); ++progress.read) {
        const std::uint8_t value = values[byte_of(in, progress.read)];
        if (value == foreign) break;
        if (value == blank) continue;
        state.bits = state.bits << 6U | value;
        if (++state.pending < 4) continue;
        out[progress.written++] = low_byte(state.bits >> 16U);
        out[progress.written++] = low_byte(state.bits >> 8U);
        out[progress.written++] = low_byte(state.bits);
        state = {};
    }
    return progress;
}

std::size_t finish(char* out, State& state) {
    const State left = state;
    state = {};
    if (left.pending < 2) return 0;
    const std::uint32_t bits = left.bits << 6U * (4 - left.pending);
    out[0] = low_byte(bits >> 16U);
    if (left.pending == 2) return 1;
    out[1] = low_byte(bits >> 8U);
    return 2;
}

std::size_t encode_groups_reference(Alphabet alphabet, std::string_view in, char* out) {
    const std::string_view characters = alphabet == Alphabet::base64 ? base64_characters : binhex_characters;
    const char* const begin = out;
    for (std::size_t at = 0; at < in.size(); at += 3) {
        const std::uint32_t bits = byte_of(in, at) << 16U | byte_of(in, at + 1) << 8U | byte_of(in, at + 2);
        for (const unsigned shift : {18U, 12U, 6U, 0U}) *out++ = characters[bits >> shift & 63U];
    }
    return static_cast<std::size_t>(out - begin);
}

std::size_t encoded_size(std::size_t n, std::size_t line_length) {
    const std::size_t characters = (n + 2) / 3 * 4;
    if (line_length == 0) return characters;
    return characters + (characters + line_length - 1) / line_length * 2;
}

std::size_t encode_base64_reference(std::string_view in, std::size_t line_length, char* out) {
    const char* const begin = out;
    std::size_t column = 0;
    for (; !in.empty(); in.remove_prefix(in.size() < 3 ? in.size() : 3)) {
        out = encode_group(in.substr(0, 3), out);
        column += 4;
        if (column != line_length) continue;
        out = end_line(out);
        column = 0;
    }
    if (line_length != 0 && column != 0) out = end_line(out);
    return static_cast<std::size_t>(out - begin);
}

}  // namespace quill::codec::sixbit
