#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quill::codec::tnef {

/// Reads little-endian fields from the front of bytes; each read fails where they do not reach, and then changes
/// nothing.
class Fields {
  public:
    explicit Fields(std::string_view bytes) : rest_(bytes) {}

    /// Returns an unsigned number of `size` bytes, at most 4.
    std::optional<std::uint32_t> number(std::size_t size) {
        if (rest_.size() < size) return std::nullopt;
        std::uint32_t out = 0;
        for (std::size_t i = size; i-- > 0;) out = out << 8U | static_cast<unsigned char>(rest_[i]);
        rest_.remove_prefix(size);
        return out;
    }

    /// Returns the next `size` bytes.
    std::optional<std::string_view> bytes(std::uint64_t size) {
        if (rest_.size() < size) return std::nullopt;
        const std::string_view out = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return out;
    }

    std::string_view rest() const { return rest_; }
    bool at_end() const { return rest_.empty(); }

  private:
    std::string_view rest_;
};

}  // namespace quill::codec::tnef
