#pragma once

#include "archive/container/archive.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quill::zip {

/// Bytes [begin, end) of an archive.
struct Extent {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;

    bool operator==(const Extent&) const = default;
};

/// From a member's local header to the end of its data and of the data descriptor behind them, if it has one.
/// REQUIRES: a local header stands there, and no other member begins inside.
Extent extent_of(std::string_view archive, const Member& member);

/// What is left of [0, end) without `removed`, in order. The removed extents do not overlap.
std::vector<Extent> kept_extents(std::uint64_t end, std::vector<Extent> removed);

/// A central header with another offset of the local header, which is not greater than the old one.
std::string with_local_offset(std::string_view central_header, std::uint64_t offset);

/// The records behind the central headers (APPNOTE 4.3.14 to 4.3.16), with those of ZIP64 where a number needs them.
std::string end_records(std::uint64_t count, std::uint64_t directory_offset, std::uint64_t directory_size,
                        std::string_view comment);

}  // namespace quill::zip
