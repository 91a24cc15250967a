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

/// Returns the extent from a member's local header to the end of its data and of its data descriptor, if it has one.
/// REQUIRES: a local header is there, and no other member begins inside.
Extent extent_of(std::string_view archive, const Member& member);

/// Returns the rest of [0, end) without `removed`, in order. The removed extents do not overlap.
std::vector<Extent> kept_extents(std::uint64_t end, std::vector<Extent> removed);

/// Returns a central header with a new offset of the local header, which is not greater than the old one.
std::string with_local_offset(std::string_view central_header, std::uint64_t offset);

/// Returns the records after the central headers (APPNOTE 4.3.14 to 4.3.16), with those of ZIP64 if a number needs
/// them.
std::string end_records(std::uint64_t count, std::uint64_t directory_offset, std::uint64_t directory_size,
                        std::string_view comment);

}  // namespace quill::zip
