#pragma once

#include "checksum/checksum.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// BinHex, built from its definition: header, forks and their CRCs, runs, six bits a character.
namespace quill::tests {

inline std::string with_crc(std::string bytes) {
    const std::uint16_t crc = quill::crc16_binhex(0, bytes);
    bytes.push_back(static_cast<char>(crc >> 8U));
    bytes.push_back(static_cast<char>(crc & 0xFFU));
    return bytes;
}

inline std::string big_endian(std::size_t n) {
    return {'\0', '\0', static_cast<char>(n >> 8U & 0xFFU), static_cast<char>(n & 0xFFU)};
}

/// Returns the stream of a file; no byte of the forks may be 0x90.
inline std::string binhex_of(const std::string& data, const std::string& resource, const std::string& name = "a.sc") {
    const std::string header = static_cast<char>(name.size()) + name + std::string("\0TEXTttxt\0\0", 11) +
                               big_endian(data.size()) + big_endian(resource.size());
    return with_crc(header) + with_crc(data) + with_crc(resource);
}

/// Returns the lines of a stream, including the colons, each with its line end. A CRC may contain the marker of a run,
/// which is escaped.
inline std::vector<std::string> hqx_lines(const std::string& stream) {
    constexpr std::string_view alphabet = "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr";
    std::string escaped;
    for (const char c : stream) {
        escaped.push_back(c);
        if (c == '\x90') escaped.push_back('\0');
    }
    std::string text = ":";
    unsigned bits = 0, count = 0;
    for (const char c : escaped) {
        bits = bits << 8U | static_cast<unsigned char>(c);
        for (count += 8; count >= 6; count -= 6) text.push_back(alphabet[bits >> (count - 6) & 63U]);
    }
    if (count > 0) text.push_back(alphabet[bits << (6 - count) & 63U]);
    text += ":";
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size(); at += 64) lines.push_back(text.substr(at, 64) + "\n");
    return lines;
}

/// Returns the text of a stream.
inline std::string hqx(const std::string& stream) {
    std::string out = "(This file must be converted with BinHex 4.0)\n\n";
    for (const std::string& line : hqx_lines(stream)) out += line;
    return out;
}

}  // namespace quill::tests
