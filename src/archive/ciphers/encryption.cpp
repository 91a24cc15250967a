#include "archive/ciphers/encryption.h"

#include "archive/ciphers/aes_cipher.h"
#include "archive/ciphers/traditional_cipher.h"

namespace quill::archive {
namespace {

class TraditionalEncryptor final : public Encryptor {
  public:
    explicit TraditionalEncryptor(std::string_view password) : cipher_(password) {}

    std::string head(std::uint32_t crc) override { return cipher_.make_header(static_cast<std::uint8_t>(crc >> 24U)); }
    void encrypt(std::span<char> bytes) override { cipher_.encrypt(bytes); }
    std::string tail() override { return {}; }

  private:
    TraditionalCipher cipher_;
};

}  // namespace

std::unique_ptr<Encryptor> make_encryptor(Encryption encryption, std::string_view password) {
    if (encryption == Encryption::traditional) return std::make_unique<TraditionalEncryptor>(password);
    return make_aes_encryptor(aes_strength(encryption), password);
}

}  // namespace quill::archive
