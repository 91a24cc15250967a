#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quill::text {
namespace {

// Windows-1252, 0x80 to 0x9F; the rest equals ISO 8859-1.
constexpr std::array<char16_t, 32> windows_1252_high = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                        0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr unsigned byte_at(std::string_view s, std::size_t i) {
    return static_cast<unsigned char>(s[i]);
}

constexpr bool is_continuation(unsigned byte) {
    return (byte & 0xC0U) == 0x80U;
}

}  // namespace

std::size_t character_length(std::string_view s) {
    const unsigned first = byte_at(s, 0);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || s.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if (!is_continuation(byte_at(s, i))) return 0;
    }
    const unsigned second = byte_at(s, 1);
    const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool surrogate = first == 0xED && second > 0x9F;
    const bool beyond = first == 0xF4 && second > 0x8F;
    return overlong || surrogate || beyond ? 0 : length;
}

bool is_utf8(std::string_view s) {
    while (!s.empty()) {
        const std::size_t length = character_length(s);
        if (length == 0) return false;
        s.remove_prefix(length);
    }
    return true;
}

std::string windows_1252_to_utf8(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        const unsigned byte = byte_at(s, i);
        append_utf8(out, byte >= 0x80 && byte < 0xA0 ? windows_1252_high[byte - 0x80] : byte);
    }
    return out;
}

namespace {

/// Returns the bytes of the incomplete character at the beginning of `s`, or 0 if there is none.
std::size_t cut_length(std::string_view s) {
    for (std::size_t kept = std::min<std::size_t>(s.size(), 3); kept > 0; --kept) {
        // After E0 and F0 the second byte is at least A0 or 90, after ED and F4 at most 9F or 8F.
        for (const std::string_view rest : {"\x80\x80\x80", "\xA0\x80\x80"}) {
            if (character_length(std::string(s.substr(0, kept)).append(rest)) > kept) return kept;
        }
    }
    return 0;
}

/// Returns `s` with U+FFFD in place of a cut character, if that is its only fault.
std::optional<std::string> without_cut_character(std::string_view s) {
    std::string out;
    bool has_whole = false;
    bool has_cut = false;
    while (!s.empty()) {
        std::size_t length = character_length(s);
        if (length > 0) {
            out += s.substr(0, length);
            has_whole = has_whole || length > 1;
        } else {
            length = cut_length(s);
            if (length == 0 || has_cut) return std::nullopt;
            append_utf8(out, U'\uFFFD');
            has_cut = true;
        }
        s.remove_prefix(length);
    }
    return has_whole ? std::optional(std::move(out)) : std::nullopt;
}

}  // namespace

std::string to_utf8(std::string_view s) {
    if (is_utf8(s)) return std::string(s);
    std::optional<std::string> mended = without_cut_character(s);
    return mended ? *std::move(mended) : windows_1252_to_utf8(s);
}

char32_t next_character(std::string_view& s) {
    const std::size_t length = character_length(s);
    const unsigned first = byte_at(s, 0);
    char32_t character = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) character = character << 6U | (byte_at(s, i) & 0x3FU);
    s.remove_prefix(length == 0 ? 1 : length);
    return character;
}

void append_utf8(std::string& out, char32_t character) {
    if (character < 0x80) {
        out += static_cast<char>(character);
        return;
    }
    const unsigned continuations = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr std::array<unsigned, 4> lead = {0, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(lead[continuations] | character >> (6 * continuations));
    for (unsigned i = continuations; i-- > 0;) out += static_cast<char>(0x80U | (character >> (6 * i) & 0x3FU));
}

}  // namespace quill::text
