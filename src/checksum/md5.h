#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quill {

/// Computes the MD5 digest (RFC 1321) of bytes added piece by piece, to check a Content-MD5 (RFC 1864).
class Md5 {
  public:
    using Digest = std::array<unsigned char, 16>;

    void add(std::string_view bytes);

    /// Returns the digest of all bytes added. No more can be added afterwards.
    Digest finish();

  private:
    void add_block(const unsigned char* block);

    std::array<std::uint32_t, 4> state_ = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
    std::array<unsigned char, 64> pending_ = {};
    std::uint64_t size_ = 0;
};

}  // namespace quill
