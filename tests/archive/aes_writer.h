#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <nettle/aes.h>
#include <nettle/hmac.h>
#include <nettle/pbkdf2.h>
#include <string>
#include <string_view>
#include <vector>

namespace quill::tests {

/// Returns the data of a member encrypted with AES-256: salt, check of the password, encrypted bytes, code.
inline std::string aes_encrypted(std::string_view plain, std::string_view password) {
    constexpr std::size_t key = AES256_KEY_SIZE;
    const std::string salt = "sixteen of salt.";
    std::vector<std::uint8_t> derived(2 * key + 2);
    const auto bytes = [](std::string_view text) { return reinterpret_cast<const std::uint8_t*>(text.data()); };
    pbkdf2_hmac_sha1(password.size(), bytes(password), 1000, salt.size(), bytes(salt), derived.size(), derived.data());
    aes256_ctx aes;
    aes256_set_encrypt_key(&aes, derived.data());
    std::string encrypted(plain);
    for (std::size_t at = 0; at < encrypted.size(); at += AES_BLOCK_SIZE) {
        std::array<std::uint8_t, AES_BLOCK_SIZE> block{};
        const std::size_t number = at / AES_BLOCK_SIZE + 1;
        for (unsigned i = 0; i < 4; ++i) block[i] = static_cast<std::uint8_t>(number >> 8 * i);
        aes256_encrypt(&aes, block.size(), block.data(), block.data());
        for (std::size_t i = at; i < std::min(at + block.size(), encrypted.size()); ++i) {
            encrypted[i] = static_cast<char>(static_cast<std::uint8_t>(encrypted[i]) ^ block[i - at]);
        }
    }
    hmac_sha1_ctx hmac;
    hmac_sha1_set_key(&hmac, key, &derived[key]);
    hmac_sha1_update(&hmac, encrypted.size(), bytes(encrypted));
    std::string code(10, '\0');
    hmac_sha1_digest(&hmac, code.size(), reinterpret_cast<std::uint8_t*>(code.data()));
    const std::string check(derived.end() - 2, derived.end());
    return salt + check + encrypted + code;
}

/// Returns the extra field 9901 for it: version 1 (AE-1) or 2 (AE-2), and the method of the encrypted bytes.
inline std::string aes_field(std::uint16_t version, std::uint16_t method, std::uint8_t strength = 3) {
    std::string field("\x01\x99\x07\x00", 4);
    field.push_back(static_cast<char>(version));
    field.append(std::string_view("\0AE", 3)).push_back(static_cast<char>(strength));
    field.push_back(static_cast<char>(method));
    field.push_back(static_cast<char>(method >> 8U));
    return field;
}

}  // namespace quill::tests
