#include "archive/aes_writer.h"
#include "archive/ciphers/aes_cipher.h"
#include "archive/ciphers/traditional_cipher.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::archive {
namespace {

constexpr std::string_view plain = "hello, world";

std::string from_hex(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes.push_back(static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16)));
    }
    return bytes;
}

/// A member's data: what comes before the encrypted bytes, these, and their code.
struct Parts {
    std::string head, encrypted, code;
};

Parts parts_of(const AesField& field, const std::string& data) {
    const std::size_t head = field.head_size(), end = data.size() - aes_code_size;
    return {data.substr(0, head), data.substr(head, end - head), data.substr(end)};
}

struct Decrypted {
    std::string text;
    bool authentic = false;
};

/// Decrypts in pieces of `piece` bytes.
Decrypted decrypt(Cipher& cipher, std::string text, std::size_t piece) {
    for (std::size_t at = 0; at < text.size(); at += piece) {
        cipher.decrypt(std::span(text).subspan(at, std::min(piece, text.size() - at)));
    }
    return {text, cipher.authentic() == true};
}

TEST(AesCipher, ReadsWhatAnotherProgramWrote) {
    const struct {
        std::uint8_t strength;
        const char* data;  // made by 7z, password "sesame"
    } cases[] = {
        {1, "4e2bb8a4e3305025c89794e4ac53275906398c20a266fbc1418065119351cb83"},
        {2, "c51750002792d7bdea685be224068fd66f1e74aaf7ce641e40d417d370cb3639297d50a9"},
        {3, "87754cf89c6bd062cae9e692a5570475b2e6882299f31874af1a4dc40fae33dcc0f8019356d15436"},
    };
    for (const auto& c : cases) {
        const AesField field{2, c.strength, 0};
        const Parts parts = parts_of(field, from_hex(c.data));
        EXPECT_EQ(make_aes_cipher(field, "another", parts.head, parts.code), nullptr);
        for (const std::size_t piece : {1U, 5U, 100U}) {
            const auto cipher = make_aes_cipher(field, "sesame", parts.head, parts.code);
            ASSERT_NE(cipher, nullptr);
            const Decrypted decrypted = decrypt(*cipher, parts.encrypted, piece);
            EXPECT_EQ(decrypted.text, plain);
            EXPECT_TRUE(decrypted.authentic);
        }
    }
}

TEST(AesCipher, KnowsAChangeOfAnyBit) {
    const AesField field{2, 3, 0};
    const Parts parts = parts_of(field, tests::aes_encrypted(plain, "sesame"));
    const std::string rest = parts.encrypted + parts.code;
    for (std::size_t bit = 0; bit < 8 * rest.size(); ++bit) {
        std::string changed = rest;
        changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << bit % 8));
        const std::string code = changed.substr(plain.size());
        const auto cipher = make_aes_cipher(field, "sesame", parts.head, code);
        ASSERT_NE(cipher, nullptr);
        EXPECT_FALSE(decrypt(*cipher, changed.substr(0, plain.size()), 7).authentic) << bit;
    }
    for (const std::string& code : {std::string(), parts.code.substr(0, 9), parts.code + "x"}) {
        const auto cipher = make_aes_cipher(field, "sesame", parts.head, code);
        EXPECT_FALSE(decrypt(*cipher, parts.encrypted, 7).authentic);
    }
}

TEST(AesCipher, CountsOverManyBlocks) {
    const AesField field{2, 3, 0};
    const std::string text(100'001, 'x');  // more than one refill of the key stream
    const Parts parts = parts_of(field, tests::aes_encrypted(text, "sesame"));
    const auto cipher = make_aes_cipher(field, "sesame", parts.head, parts.code);
    ASSERT_NE(cipher, nullptr);
    const Decrypted decrypted = decrypt(*cipher, parts.encrypted, 999);
    EXPECT_EQ(decrypted.text, text);
    EXPECT_TRUE(decrypted.authentic);
}

TEST(AesEncryptor, IsReadByTheCipher) {
    for (std::uint8_t strength = 1; strength <= 3; ++strength) {
        const AesField field{2, strength, 0};
        std::string heads[2];
        for (std::string& head : heads) {
            const auto encryptor = make_aes_encryptor(strength, "sesame");
            head = encryptor->head(0);
            std::string text(10'007, 'x');
            for (std::size_t at = 0; at < text.size(); at += 1000) {
                encryptor->encrypt(std::span(text).subspan(at, std::min<std::size_t>(1000, text.size() - at)));
            }
            const auto cipher = make_aes_cipher(field, "sesame", head, encryptor->tail());
            ASSERT_NE(cipher, nullptr);
            const Decrypted decrypted = decrypt(*cipher, text, 999);
            EXPECT_EQ(decrypted.text, std::string(10'007, 'x'));
            EXPECT_TRUE(decrypted.authentic);
        }
        EXPECT_NE(heads[0], heads[1]);  // another salt for each member
    }
}

TEST(AesField, OfAnUnknownStrengthHasNoHead) {
    std::vector<std::size_t> sizes;
    for (std::uint8_t strength = 0; strength < 5; ++strength) sizes.push_back(AesField{2, strength, 0}.head_size());
    EXPECT_THAT(sizes, ::testing::ElementsAre(0, 10, 14, 18, 0));
}

TEST(TraditionalCipher, ReadsWhatAnotherProgramWrote) {
    // Made by Info-ZIP's zip, password "sesame"; the last byte of the header is the upper one of the time.
    const std::string data = from_hex("66c18a010284187ee803569f7357c78eed7556f9f96df457");
    TraditionalCipher cipher("sesame");
    EXPECT_EQ(cipher.read_header(std::string_view(data).substr(0, TraditionalCipher::header_size)), 0x85);
    std::string text = data.substr(TraditionalCipher::header_size);
    cipher.decrypt(text);
    EXPECT_EQ(text, plain);
    EXPECT_EQ(cipher.authentic(), std::nullopt);
}

TEST(TraditionalCipher, ReadsWhatItWrites) {
    TraditionalCipher writer("p"), reader("p");
    const std::string header = writer.make_header(0x5A);
    std::string text(plain);
    writer.encrypt(text);
    EXPECT_NE(text, plain);
    EXPECT_EQ(reader.read_header(header), 0x5A);
    reader.decrypt(text);
    EXPECT_EQ(text, plain);
}

}  // namespace
}  // namespace quill::archive
