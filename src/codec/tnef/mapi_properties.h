#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace quill::codec::tnef {

/// Types of MAPI properties (MS-OXCDATA 2.11.1) whose values are read.
enum class PropertyType : std::uint16_t { object = 0x000D, string8 = 0x001E, unicode = 0x001F, binary = 0x0102 };

/// A property with a value of variable length.
struct Property {
    std::uint16_t id = 0;
    PropertyType type = PropertyType::binary;
    std::string_view value;
};

/// Calls `on_property` for each string, binary value and object among the properties `list` (MS-OXTNEF 2.1.3.4), the
/// first value of each. Returns false where the list breaks off or has a type of unknown size.
bool read_properties(std::string_view list, const std::function<void(const Property&)>& on_property);

}  // namespace quill::codec::tnef
