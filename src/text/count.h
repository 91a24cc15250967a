#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers formatted for people.
namespace quill::text {

/// Returns 1234567 as "1,234,567".
inline std::string grouped(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
    return digits;
}

/// Returns "1 byte", "2 bytes": `noun` gets an s for all numbers but one.
inline std::string counted(std::uint64_t number, std::string_view noun) {
    return grouped(number).append(" ").append(noun).append(number == 1 ? "" : "s");
}

}  // namespace quill::text
