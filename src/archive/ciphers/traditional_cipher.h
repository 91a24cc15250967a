#pragma once

#include "archive/ciphers/cipher.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace quill::archive {

/// The stream cipher of traditional ZIP encryption (APPNOTE 6.1). It does not stop an attacker.
class TraditionalCipher final : public Cipher {
  public:
    static constexpr std::size_t header_size = 12;

    explicit TraditionalCipher(std::string_view password);

    void decrypt(std::span<char> bytes) override;
    void encrypt(std::span<char> bytes);

    /// Decrypts a member's 12 bytes of header and returns the last, which reveals a wrong password 255 times out of
    /// 256.
    std::uint8_t read_header(std::string_view header);

    /// Returns eleven random bytes and `check`, encrypted.
    std::string make_header(std::uint8_t check);

  private:
    void update(std::uint8_t plain);
    std::uint8_t next() const;

    std::array<std::uint32_t, 3> keys_{0x12345678, 0x23456789, 0x34567890};
};

}  // namespace quill::archive
