#include "codec/tnef/mapi_properties.h"

#include "codec/tnef/little_endian.h"

#include <algorithm>
#include <array>
#include <optional>

namespace quill::codec::tnef {
namespace {

constexpr std::uint16_t several_values = 0x1000;
constexpr std::uint16_t first_named = 0x8000;
constexpr std::uint64_t guid_size = 16;

/// How many bytes a value takes, the blanks after it included; 0 where its length comes before it.
struct TypeSize {
    std::uint16_t type;
    std::uint64_t size;
};

constexpr std::array type_sizes = {
    TypeSize{0x0002, 4},                               // 16-bit integer
    TypeSize{0x0003, 4},                               // 32-bit integer
    TypeSize{0x0004, 4},                               // float
    TypeSize{0x0005, 8},                               // double
    TypeSize{0x0006, 8},                               // currency
    TypeSize{0x0007, 8},                               // time as a double
    TypeSize{0x000A, 4},                               // error
    TypeSize{0x000B, 4},                               // boolean
    TypeSize{0x000D, 0},                               // object
    TypeSize{0x0014, 8},                               // 64-bit integer
    TypeSize{0x001E, 0},                               // 8-bit string
    TypeSize{0x001F, 0},                               // UTF-16 string
    TypeSize{0x0040, 8},                               // time
    TypeSize{0x0048, guid_size}, TypeSize{0x0102, 0},  // binary
};

constexpr std::uint64_t padded(std::uint64_t size) {
    return (size + 3) / 4 * 4;
}

/// Skips the name of a property that is not known by its number alone.
bool skip_name(Fields& fields) {
    if (!fields.bytes(guid_size)) return false;
    const auto kind = fields.number(4);
    const auto number_or_length = fields.number(4);
    return kind && number_or_length && (*kind == 0 || fields.bytes(padded(*number_or_length)));
}

/// Reads `count` values of variable length and returns the first, empty where there is none.
std::optional<std::string_view> read_values(Fields& fields, std::uint32_t count) {
    std::string_view first;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto size = fields.number(4);
        const auto value = size ? fields.bytes(padded(*size)) : std::nullopt;
        if (!value) return std::nullopt;
        if (i == 0) first = value->substr(0, *size);
    }
    return first;
}

bool read_property(Fields& fields, const std::function<void(const Property&)>& on_property) {
    const auto type = fields.number(2);
    const auto id = fields.number(2);
    if (!type || !id || (*id >= first_named && !skip_name(fields))) return false;
    const std::uint32_t one = *type & ~std::uint32_t{several_values};
    const auto* const known =
        std::find_if(type_sizes.begin(), type_sizes.end(), [one](const TypeSize& row) { return row.type == one; });
    if (known == type_sizes.end()) return false;
    const bool counted = known->size == 0 || one != *type;
    const auto count = counted ? fields.number(4) : std::uint32_t{1};
    if (!count) return false;
    if (known->size != 0) return fields.bytes(*count * known->size).has_value();
    const auto value = read_values(fields, *count);
    if (!value) return false;
    if (*count > 0) on_property({static_cast<std::uint16_t>(*id), static_cast<PropertyType>(one), *value});
    return true;
}

}  // namespace

bool read_properties(std::string_view list, const std::function<void(const Property&)>& on_property) {
    Fields fields(list);
    const auto count = fields.number(4);
    if (!count) return false;
    for (std::uint32_t i = 0; i < *count; ++i) {
        if (!read_property(fields, on_property)) return false;
    }
    return true;
}

}  // namespace quill::codec::tnef
