#pragma once

#include "archive/ciphers/cipher.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace quill::archive {

/// The contents of an extra field 9901 (APPNOTE 4.5.12 and the AE-x definition).
struct AesField {
    std::uint16_t version = 0;  ///< 1: the CRC is checked too; 2: the CRC is omitted
    std::uint8_t strength = 0;  ///< 1, 2, 3: keys of 128, 192, 256 bits
    std::uint16_t method = 0;   ///< the compression method of the encrypted bytes

    /// Returns the size of the part before the encrypted bytes: 0 if the strength is unknown.
    std::size_t head_size() const;

    bool operator==(const AesField&) const = default;
};

/// Size in bytes of the authentication code after the encrypted bytes.
constexpr std::size_t aes_code_size = 10;

/// Makes the cipher of a member that has `head` (salt and check of the password) before its encrypted bytes and `code`
/// after them: AES in counter mode with the key of PBKDF2, and 80 bits of HMAC-SHA1 over the encrypted bytes. Null if
/// the password is wrong. A wrong password passes once in 65,536 times. REQUIRES: `head` has `field.head_size()` bytes,
/// more than 0. A `code` of another size than 10 is never right.
std::unique_ptr<Cipher> make_aes_cipher(const AesField& field, std::string_view password, std::string_view head,
                                        std::string_view code);

/// Makes the encryptor of a member with a fresh random salt. REQUIRES: `strength` is 1, 2 or 3.
std::unique_ptr<Encryptor> make_aes_encryptor(std::uint8_t strength, std::string_view password);

}  // namespace quill::archive
