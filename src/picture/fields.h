#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Little-endian fields of a file. Bytes beyond its end are 0.
namespace quill::picture {

inline std::uint8_t byte_at(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<std::uint8_t>(bytes[at]) : std::uint8_t{0};
}

inline std::uint16_t word_at(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint16_t>(byte_at(bytes, at) | byte_at(bytes, at + 1) << 8U);
}

inline std::uint32_t long_at(std::string_view bytes, std::size_t at) {
    return word_at(bytes, at) | std::uint32_t{word_at(bytes, at + 2)} << 16U;
}

/// Returns at most `size` bytes from `at`; none beyond the end.
inline std::string_view part_at(std::string_view bytes, std::size_t at, std::size_t size = std::string_view::npos) {
    return at < bytes.size() ? bytes.substr(at, size) : std::string_view();
}

}  // namespace quill::picture
