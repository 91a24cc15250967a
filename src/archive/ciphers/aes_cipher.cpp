#include "archive/ciphers/aes_cipher.h"

#include <algorithm>
#include <array>
#include <nettle/aes.h>
#include <nettle/hmac.h>
#include <nettle/memops.h>
#include <nettle/pbkdf2.h>
#include <string>
#include <variant>
#include <vector>

namespace quill::archive {
namespace {

constexpr std::size_t most_strength = 3;
constexpr std::size_t check_size = 2;
constexpr unsigned rounds = 1000;
constexpr std::size_t blocks_at_once = 256;

std::size_t key_size(const AesField& field) {
    return 8 + 8U * field.strength;
}

std::size_t salt_size(const AesField& field) {
    return key_size(field) / 2;
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

/// The counter mode of AE-x: a little-endian number from 1 on. (Other formats count big-endian.)
class KeyStream {
  public:
    explicit KeyStream(const BlockCipher& aes) : aes_(aes) {}

    /// Changes `bytes` by as many of the stream.
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

class AesCipher final : public Cipher {
  public:
    AesCipher(const BlockCipher& aes, std::span<const std::uint8_t> code_key, std::string_view code)
        : stream_(aes), code_(code) {
        hmac_sha1_set_key(&hmac_, code_key.size(), code_key.data());
    }

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
    hmac_sha1_ctx hmac_{};
    std::string code_;
};

}  // namespace

std::size_t AesField::head_size() const {
    return strength == 0 || strength > most_strength ? 0 : salt_size(*this) + check_size;
}

std::unique_ptr<Cipher> make_aes_cipher(const AesField& field, std::string_view password, std::string_view head,
                                        std::string_view code) {
    // The key of AES, the key of the code, and the check of the password.
    const std::size_t key = key_size(field);
    std::vector<std::uint8_t> derived(2 * key + check_size);
    pbkdf2_hmac_sha1(password.size(), unsigned_bytes(password), rounds, salt_size(field), unsigned_bytes(head),
                     derived.size(), derived.data());
    if (memeql_sec(&derived[2 * key], head.data() + salt_size(field), check_size) != 1) return nullptr;
    return std::make_unique<AesCipher>(BlockCipher(field.strength, derived.data()),
                                       std::span(derived).subspan(key, key), code);
}

}  // namespace quill::archive
