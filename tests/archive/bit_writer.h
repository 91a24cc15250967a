#pragma once

#include <cstdint>
#include <string>

namespace quill::tests {

/// Puts bits together, the least significant of each byte first.
class BitWriter {
  public:
    BitWriter& put(std::uint32_t value, unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            if (used_ == 0) bytes_.push_back('\0');
            const unsigned bit = value >> i & 1U;
            bytes_.back() = static_cast<char>(static_cast<unsigned char>(bytes_.back()) | bit << used_);
            used_ = (used_ + 1) % 8;
        }
        return *this;
    }

    /// Puts a prefix code, whose first bit is the highest.
    BitWriter& put_code(std::uint32_t code, unsigned count) {
        for (unsigned i = count; i-- > 0;) put(code >> i & 1U, 1);
        return *this;
    }

    const std::string& bytes() const { return bytes_; }

  private:
    std::string bytes_;
    unsigned used_ = 0;  // bits of the last byte
};

}  // namespace quill::tests
