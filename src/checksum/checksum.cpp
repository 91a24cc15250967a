#include "checksum/checksum.h"

#include <array>
#include <cstddef>

namespace quill {
namespace {

constexpr std::size_t slices = 8;
using Crc16Tables = std::array<std::array<std::uint16_t, 256>, slices>;

/// Returns tables[k][b]: what the byte b adds to the CRC when k more bytes follow it.
constexpr Crc16Tables make_crc16_tables() {
    constexpr std::uint32_t polynomial = 0x1021;
    Crc16Tables tables{};
    for (std::uint32_t b = 0; b < 256; ++b) {
        std::uint32_t crc = b << 8U;
        for (int bit = 0; bit < 8; ++bit) crc = (crc << 1U) ^ ((crc & 0x8000U) != 0 ? polynomial : 0);
        tables[0][b] = static_cast<std::uint16_t>(crc);
    }
    for (std::size_t k = 1; k < slices; ++k) {
        for (std::size_t b = 0; b < 256; ++b) {
            const std::uint32_t before = tables[k - 1][b];
            tables[k][b] = static_cast<std::uint16_t>((before << 8U) ^ tables[0][before >> 8U]);
        }
    }
    return tables;
}

constexpr Crc16Tables crc16_tables = make_crc16_tables();

std::size_t byte_at(std::string_view s, std::size_t at) {
    return static_cast<unsigned char>(s[at]);
}

}  // namespace

std::uint16_t crc16_binhex(std::uint16_t crc, std::string_view bytes) {
    const Crc16Tables& t = crc16_tables;
    for (; bytes.size() >= slices; bytes.remove_prefix(slices)) {
        const std::size_t high = byte_at(bytes, 0) ^ (crc >> 8U);
        const std::size_t low = byte_at(bytes, 1) ^ (crc & 0xFFU);
        std::uint16_t sum = t[slices - 1][high] ^ t[slices - 2][low];
        for (std::size_t i = 2; i < slices; ++i) sum ^= t[slices - 1 - i][byte_at(bytes, i)];
        crc = sum;
    }
    for (const char c : bytes) {
        const std::size_t top = (crc >> 8U) ^ static_cast<unsigned char>(c);
        crc = static_cast<std::uint16_t>((static_cast<std::uint32_t>(crc) << 8U) ^ t[0][top]);
    }
    return crc;
}

}  // namespace quill
