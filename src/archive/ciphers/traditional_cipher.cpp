#include "archive/ciphers/traditional_cipher.h"

#include <random>

namespace quill::archive {
namespace {

constexpr std::array<std::uint32_t, 256> crc_table = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t crc = i;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
        table[i] = crc;
    }
    return table;
}();

std::uint32_t crc_of_byte(std::uint32_t crc, std::uint32_t byte) {
    return (crc >> 8U) ^ crc_table[(crc ^ byte) & 0xFFU];
}

}  // namespace

TraditionalCipher::TraditionalCipher(std::string_view password) {
    for (const char c : password) update(static_cast<std::uint8_t>(c));
}

void TraditionalCipher::update(std::uint8_t plain) {
    constexpr std::uint32_t multiplier = 134775813;
    keys_[0] = crc_of_byte(keys_[0], plain);
    keys_[1] = (keys_[1] + (keys_[0] & 0xFFU)) * multiplier + 1;
    keys_[2] = crc_of_byte(keys_[2], keys_[1] >> 24U);
}

std::uint8_t TraditionalCipher::next() const {
    const std::uint32_t low = (keys_[2] | 2U) & 0xFFFFU;
    return static_cast<std::uint8_t>((low * (low ^ 1U)) >> 8U);
}

void TraditionalCipher::decrypt(std::span<char> bytes) {
    for (char& byte : bytes) {
        const auto plain = static_cast<std::uint8_t>(static_cast<std::uint8_t>(byte) ^ next());
        byte = static_cast<char>(plain);
        update(plain);
    }
}

void TraditionalCipher::encrypt(std::span<char> bytes) {
    for (char& byte : bytes) {
        const auto plain = static_cast<std::uint8_t>(byte);
        byte = static_cast<char>(plain ^ next());
        update(plain);
    }
}

std::uint8_t TraditionalCipher::read_header(std::string_view header) {
    std::string plain(header);
    decrypt(plain);
    return plain.empty() ? 0 : static_cast<std::uint8_t>(plain.back());
}

std::string TraditionalCipher::make_header(std::uint8_t check) {
    std::random_device random;
    std::string header;
    while (header.size() + 1 < header_size) header.push_back(static_cast<char>(random()));
    header.push_back(static_cast<char>(check));
    encrypt(header);
    return header;
}

}  // namespace quill::archive
