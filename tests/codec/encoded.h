#pragma once

#include "codec/uu/uu.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quill::tests {

/// Returns Base64 in rows of 76 characters; the last row has no line end.
inline std::string base64(std::string_view bytes) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    unsigned bits = 0, count = 0;
    for (const char c : bytes) {
        bits = bits << 8U | static_cast<unsigned char>(c);
        for (count += 8; count >= 6; count -= 6) out.push_back(alphabet[bits >> (count - 6) & 63U]);
    }
    if (count > 0) out.push_back(alphabet[bits << (6 - count) & 63U]);
    while (out.size() % 4 != 0) out.push_back('=');
    for (std::size_t at = 76; at < out.size(); at += 77) out.insert(at, "\n");
    return out;
}

/// Returns bytes that look random and are the same in each run.
inline std::string noise(std::size_t size, unsigned seed = 1) {
    std::string out;
    for (unsigned state = seed; out.size() < size; state = state * 1664525U + 1013904223U) {
        out.push_back(static_cast<char>(state >> 24U));
    }
    return out;
}

/// Returns the lines of `text`, without their ends.
inline std::vector<std::string> lines_of(std::string_view text) {
    std::vector<std::string> out;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        out.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return out;
}

inline std::string text_of(const std::vector<std::string>& lines) {
    std::string out;
    for (const std::string& line : lines) out += line + "\n";
    return out;
}

/// Returns the uuencoded lines of data of `bytes`, without those around them.
inline std::vector<std::string> uu_lines(std::string_view bytes) {
    std::string text(codec::uu::encoded_size(bytes.size()) + 64, '\0');
    text.resize(codec::uu::encode_lines_reference(codec::uu::Alphabet::uu, bytes, text.data()));
    std::erase(text, '\r');
    return lines_of(text);
}

}  // namespace quill::tests
