#pragma once

#include "pics/format.h"
#include "pics/record.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quill::pics {

/// A place in the directory: a record, or the remains of one.
struct Slot {
    std::uint64_t at = 0;          ///< of its first byte in the album
    std::optional<Record> record;  ///< nullopt if it can't be read
};

/// The directory of an album and the total size of its pictures.
struct Directory {
    std::vector<Slot> slots = {};  ///< in the order of the pictures
    std::uint64_t pictures_begin = header_size;
    std::uint64_t pictures_end = 0;
    bool exact = false;          ///< the sizes add up to exactly those bytes
    std::uint64_t trailing = 0;  ///< bytes after the album's end
    bool cut = false;            ///< records of the first pictures, or all records, are missing
};

/// Reads the directory of `album`, which begins with a header of `form`. A picture may look like a record, so the walk
/// ends where the sizes account for every byte; an album where they never do is damaged, and the result is what could
/// be found. The time is proportional to the album's bytes.
Directory read_directory(std::string_view album, Form form);

}  // namespace quill::pics
