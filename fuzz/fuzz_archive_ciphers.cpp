// Both ciphers without a container: the first byte chooses the cipher, or the strength of AES; the password is
// "password". The output does not depend on the size of the pieces, and a code that is right for some bytes is wrong
// for others.

#include "archive/ciphers/aes_cipher.h"
#include "archive/ciphers/traditional_cipher.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace {

namespace archive = quill::archive;

std::unique_ptr<archive::Cipher> open(std::uint8_t strength, std::string_view head, std::string_view code) {
    if (strength != 0) return archive::make_aes_cipher({2, strength, 0}, "password", head, code);
    auto cipher = std::make_unique<archive::TraditionalCipher>("password");
    cipher->read_header(head);
    return cipher;
}

std::string decrypt(archive::Cipher& cipher, std::string text, std::size_t piece) {
    for (std::size_t at = 0; at < text.size(); at += piece) {
        cipher.decrypt(std::span(text).subspan(at, std::min(piece, text.size() - at)));
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const auto strength = static_cast<std::uint8_t>(data[0] % 4);
    const std::size_t piece = 1 + data[1] % 64;
    std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::size_t head_size =
        strength == 0 ? archive::TraditionalCipher::header_size : archive::AesField{2, strength, 0}.head_size();
    const std::size_t code_size = strength == 0 ? 0 : archive::aes_code_size;
    if (bytes.size() < head_size + code_size) return 0;
    const std::string_view head = bytes.substr(0, head_size), code = bytes.substr(bytes.size() - code_size);
    std::string text(bytes.substr(head_size, bytes.size() - head_size - code_size));
    const auto first = open(strength, head, code), second = open(strength, head, code),
               third = open(strength, head, code);
    if (!first) return 0;
    if (decrypt(*first, text, text.size() + 1) != decrypt(*second, text, piece)) std::abort();
    if (first->authentic() != second->authentic()) std::abort();
    if (text.empty()) return 0;
    const std::optional<bool> before = second->authentic();
    text.front() = static_cast<char>(text.front() ^ 1);
    decrypt(*third, text, piece);
    if (before == true && third->authentic() == true) std::abort();
    return 0;
}
