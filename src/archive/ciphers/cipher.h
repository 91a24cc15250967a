#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace quill::archive {

/// Decrypts one member's data.
class Cipher {
  public:
    Cipher() = default;
    Cipher(const Cipher&) = default;
    Cipher& operator=(const Cipher&) = default;
    virtual ~Cipher() = default;

    /// Decrypts `bytes`, the next of the data, in place.
    virtual void decrypt(std::span<char> bytes) = 0;

    /// Returns true if the data's authentication code is right; nullopt for a cipher without one. REQUIRES: all of the
    /// data has been decrypted.
    virtual std::optional<bool> authentic() { return std::nullopt; }
};

/// Encrypts one member's data.
class Encryptor {
  public:
    Encryptor() = default;
    Encryptor(const Encryptor&) = delete;
    Encryptor& operator=(const Encryptor&) = delete;
    virtual ~Encryptor() = default;

    /// Returns the bytes before the encrypted ones. `crc` is that of the plain data.
    virtual std::string head(std::uint32_t crc) = 0;
    /// Encrypts `bytes`, the next of the data, in place.
    virtual void encrypt(std::span<char> bytes) = 0;
    /// Returns the bytes after the encrypted ones. REQUIRES: all of the data has been encrypted.
    virtual std::string tail() = 0;
};

}  // namespace quill::archive
