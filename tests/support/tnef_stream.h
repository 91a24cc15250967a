#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Writes TNEF streams without the program's own code.
namespace quill::tests::tnef {

inline std::string number(std::uint32_t value, unsigned size = 4) {
    std::string out;
    for (; size > 0; --size, value >>= 8U) out.push_back(static_cast<char>(value & 0xFFU));
    return out;
}

/// An attribute of the message (level 1) or of an attachment (2), with its 16-bit sum.
inline std::string attribute(unsigned level, std::uint32_t id, std::string_view data) {
    std::uint32_t sum = 0;
    for (const char c : data) sum += static_cast<unsigned char>(c);
    return number(level, 1) + number(id) + number(static_cast<std::uint32_t>(data.size())) + std::string(data) +
           number(sum & 0xFFFFU, 2);
}

/// A property with one value of variable length.
inline std::string property(std::uint32_t type, std::uint32_t id, std::string_view value) {
    return number(type, 2) + number(id, 2) + number(1) + number(static_cast<std::uint32_t>(value.size())) +
           std::string(value) + std::string((4 - value.size() % 4) % 4, '\0');
}

inline std::string properties(const std::vector<std::string>& list) {
    std::string out = number(static_cast<std::uint32_t>(list.size()));
    for (const std::string& one : list) out += one;
    return out;
}

/// ASCII as UTF-16 with a NUL at its end.
inline std::string wide(std::string_view ascii) {
    std::string out;
    for (const char c : ascii) out.append({c, '\0'});
    return out + std::string(2, '\0');
}

inline std::string begin_attachment() {
    return attribute(2, 0x00069002, std::string(14, '\0'));
}
inline std::string title(const std::string& name) {
    return attribute(2, 0x00018010, name + '\0');
}
inline std::string data(std::string_view bytes) {
    return attribute(2, 0x0006800F, bytes);
}
inline std::string attachment_properties(const std::vector<std::string>& list) {
    return attribute(2, 0x00069005, properties(list));
}

/// An attachment as most programs write it.
inline std::string attachment(const std::string& name, std::string_view bytes) {
    return begin_attachment() + data(bytes) + title(name);
}

inline std::string stream(std::string_view attributes) {
    return number(0x223E9F78) + number(1, 2) + attribute(1, 0x00069007, number(1252) + number(0)) +
           std::string(attributes);
}

/// The value of an attachment that is a message, with the interface before its stream.
inline std::string message_object(std::string_view inner) {
    return std::string("\x07\x03\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16) + std::string(inner);
}

}  // namespace quill::tests::tnef
