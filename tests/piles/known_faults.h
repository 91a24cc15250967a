#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

/// The present faults, as upper bounds: a fix of a class lowers its row.
namespace quill::tests {

struct KnownPileFault {
    std::string_view class_name;  ///< the event, and the format of the parts
    std::size_t count = 0;
};

constexpr std::array known_pile_fault_table = {
    KnownPileFault{"FALSE mime", 4},  KnownPileFault{"FALSE partial", 1},    KnownPileFault{"law doubled", 2},
    KnownPileFault{"silent yenc", 1}, KnownPileFault{"silent yenc-pcrc", 1},
};

constexpr std::size_t known_pile_faults(std::string_view class_name) {
    const auto* const row =
        std::find_if(known_pile_fault_table.begin(), known_pile_fault_table.end(),
                     [class_name](const KnownPileFault& known) { return known.class_name == class_name; });
    return row == known_pile_fault_table.end() ? 0 : row->count;
}

constexpr std::size_t least_right = 1953;  ///< series that are exact or rightly called incomplete

}  // namespace quill::tests
