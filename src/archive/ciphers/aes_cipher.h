#pragma once

#include "archive/ciphers/cipher.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace quill::archive {

/// What an extra field 9901 says (APPNOTE 4.5.12 and the AE-x definition).
struct AesField {
    std::uint16_t version = 0;  ///< 1: the CRC counts too; 2: the CRC is left out
    std::uint8_t strength = 0;  ///< 1, 2, 3: keys of 128, 192, 256 bits
    std::uint16_t method = 0;   ///< the compression method of the encrypted bytes

    /// Returns the bytes that a member has in front of its encrypted bytes: 0 where the strength is unknown.
    std::size_t head_size() const;

    bool operator==(const AesField&) const = default;
};

/// Bytes of the authentication code that follows the encrypted bytes.
constexpr std::size_t aes_code_size = 10;

/// Makes the cipher of a member that has `head` (salt and check of the password) before its encrypted bytes and `code`
/// behind them: AES in counter mode with the key of PBKDF2, and 80 bits of HMAC-SHA1 over the encrypted bytes. Null
/// where the password is wrong. A wrong password passes once in 65,536 times.
/// REQUIRES: `head` has `field.head_size()` bytes, more than 0. A `code` of another size than 10 is never right.
std::unique_ptr<Cipher> make_aes_cipher(const AesField& field, std::string_view password, std::string_view head,
                                        std::string_view code);

/// Makes the encryptor of a member with a fresh random salt. REQUIRES: `strength` is 1, 2 or 3.
std::unique_ptr<Encryptor> make_aes_encryptor(std::uint8_t strength, std::string_view password);

}  // namespace quill::archive
