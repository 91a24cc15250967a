#pragma once

#include <optional>
#include <span>

namespace quill::archive {

/// Undoes the encryption of one member's data.
class Cipher {
  public:
    Cipher() = default;
    Cipher(const Cipher&) = default;
    Cipher& operator=(const Cipher&) = default;
    virtual ~Cipher() = default;

    /// Decrypts `bytes`, the next of the data, in place.
    virtual void decrypt(std::span<char> bytes) = 0;

    /// Returns whether the data's authentication code is right; nullopt for a cipher without one.
    /// REQUIRES: all of the data has been decrypted.
    virtual std::optional<bool> authentic() { return std::nullopt; }
};

}  // namespace quill::archive
