#include "archive/ciphers/aes_cipher.h"

#include <algorithm>
#include <array>
#include <nettle/aes.h>
#include <nettle/hmac.h>
#include <nettle/memops.h>
#include <nettle/pbkdf2.h>
#include <random>
#include <string>
#include <variant>
#include <vector>

namespace quill::archive {
namespace {

constexpr std::size_t most_strength = 3;
constexpr std::size_t check_size = 2;
constexpr unsigned rounds = 1000;
constexpr std::size_t blocks_at_once = 256;

std::size_t key_size(std::uint8_t strength) {
    return 8 + 8U * strength;
}

std::size_t salt_size(std::uint8_t strength) {
    return key_size(strength) / 2;
}

const std::uint8_t* unsigned_bytes(std::string_view bytes) {
    return reinterpret_cast<const std::uint8_t*>(bytes.data());
}

/// AES with a key of one of the three sizes.
class BlockCipher {
  public:
    BlockCipher(std::uint8_t strength, const std::uint8_t* key) {
        switch (strength) {
            case 1:
                aes128_set_encrypt_key(&context_.emplace<aes128_ctx>(), key);
                break;
            case 2:
                aes192_set_encrypt_key(&context_.emplace<aes192_ctx>(), key);
                break;
            default:
                aes256_set_encrypt_key(&context_.emplace<aes256_ctx>(), key);
                break;
        }
    }

    void encrypt(std::size_t size, std::uint8_t* blocks) const {
        if (const auto* aes128 = std::get_if<aes128_ctx>(&context_)) aes128_encrypt(aes128, size, blocks, blocks);
        if (const auto* aes192 = std::get_if<aes192_ctx>(&context_)) aes192_encrypt(aes192, size, blocks, blocks);
        if (const auto* aes256 = std::get_if<aes256_ctx>(&context_)) aes256_encrypt(aes256, size, blocks, blocks);
    }

  private:
    std::variant<aes128_ctx, aes192_ctx, aes256_ctx> context_;
};

/// The counter mode of AE-x: a little-endian number from 1. (Other formats count big-endian.)
class KeyStream {
  public:
    explicit KeyStream(const BlockCipher& aes) : aes_(aes) {}

    /// Combines `bytes` with as many bytes of the stream.
    void apply(std::span<char> bytes) {
        while (!bytes.empty()) {
            if (at_ == stream_.size()) refill();
            const std::size_t size = std::min(bytes.size(), stream_.size() - at_);
            nettle_memxor(bytes.data(), &stream_[at_], size);
            at_ += size;
            bytes = bytes.subspan(size);
        }
    }

  private:
    void refill() {
        stream_.fill(0);
        for (std::size_t block = 0; block < stream_.size(); block += AES_BLOCK_SIZE) {
            ++counter_;
            for (std::size_t i = 0; i < sizeof counter_; ++i) {
                stream_[block + i] = static_cast<std::uint8_t>(counter_ >> (8 * i));
            }
        }
        aes_.encrypt(stream_.size(), stream_.data());
        at_ = 0;
    }

    BlockCipher aes_;
    std::uint64_t counter_ = 0;
    std::array<std::uint8_t, blocks_at_once * AES_BLOCK_SIZE> stream_{};
    std::size_t at_ = stream_.size();
};

/// The values derived from password and salt: the key of AES, the key of the code, and the check of the password.
class Keys {
  public:
    Keys(std::uint8_t strength, std::string_view password, std::string_view salt)
        : strength_(strength), size_(key_size(strength)), derived_(2 * size_ + check_size) {
        pbkdf2_hmac_sha1(password.size(), unsigned_bytes(password), rounds, salt.size(), unsigned_bytes(salt),
                         derived_.size(), derived_.data());
    }

    BlockCipher aes() const { return {strength_, derived_.data()}; }
    hmac_sha1_ctx code() const {
        hmac_sha1_ctx context{};
        hmac_sha1_set_key(&context, size_, &derived_[size_]);
        return context;
    }
    std::string_view check() const { return {reinterpret_cast<const char*>(&derived_[2 * size_]), check_size}; }

  private:
    std::uint8_t strength_;
    std::size_t size_;
    std::vector<std::uint8_t> derived_;
};

class AesCipher final : public Cipher {
  public:
    AesCipher(const Keys& keys, std::string_view code) : stream_(keys.aes()), hmac_(keys.code()), code_(code) {}

    void decrypt(std::span<char> bytes) override {
        hmac_sha1_update(&hmac_, bytes.size(), unsigned_bytes({bytes.data(), bytes.size()}));
        stream_.apply(bytes);
    }

    std::optional<bool> authentic() override {
        std::array<std::uint8_t, aes_code_size> right{};
        hmac_sha1_digest(&hmac_, right.size(), right.data());
        return code_.size() == right.size() && memeql_sec(code_.data(), right.data(), right.size()) == 1;
    }

  private:
    KeyStream stream_;
    hmac_sha1_ctx hmac_;
    std::string code_;
};

class AesEncryptor final : public Encryptor {
  public:
    AesEncryptor(const Keys& keys, std::string_view salt)
        : stream_(keys.aes()), hmac_(keys.code()), head_(std::string(salt).append(keys.check())) {}

    std::string head(std::uint32_t) override { return head_; }

    void encrypt(std::span<char> bytes) override {
        stream_.apply(bytes);
        hmac_sha1_update(&hmac_, bytes.size(), unsigned_bytes({bytes.data(), bytes.size()}));
    }

    std::string tail() override {
        std::array<std::uint8_t, aes_code_size> code{};
        hmac_sha1_digest(&hmac_, code.size(), code.data());
        return {code.begin(), code.end()};
    }

  private:
    KeyStream stream_;
    hmac_sha1_ctx hmac_;
    std::string head_;
};

}  // namespace

std::size_t AesField::head_size() const {
    return strength == 0 || strength > most_strength ? 0 : salt_size(strength) + check_size;
}

std::unique_ptr<Cipher> make_aes_cipher(const AesField& field, std::string_view password, std::string_view head,
                                        std::string_view code) {
    const std::size_t salt = salt_size(field.strength);
    const Keys keys(field.strength, password, head.substr(0, salt));
    if (memeql_sec(keys.check().data(), head.data() + salt, check_size) != 1) return nullptr;
    return std::make_unique<AesCipher>(keys, code);
}

std::unique_ptr<Encryptor> make_aes_encryptor(std::uint8_t strength, std::string_view password) {
    std::random_device random;
    std::string salt(salt_size(strength), '\0');
    for (char& byte : salt) byte = static_cast<char>(random());
    return std::make_unique<AesEncryptor>(Keys(strength, password, salt), salt);
}

}  // namespace quill::archive
