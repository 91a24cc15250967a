#pragma once

#include "archive/ciphers/cipher.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace quill::archive {

/// The encryption of a member's data: the traditional one, or the strengths of AES in AesField.
enum class Encryption : std::uint8_t {
    traditional,  ///< All programs can read it; it does not stop an attacker.
    aes128,
    aes192,
    aes256
};

/// Returns 1, 2, 3 for AES; 0 for traditional encryption.
constexpr std::uint8_t aes_strength(Encryption encryption) {
    return static_cast<std::uint8_t>(encryption);
}

/// Makes the encryptor of one member.
std::unique_ptr<Encryptor> make_encryptor(Encryption encryption, std::string_view password);

}  // namespace quill::archive
