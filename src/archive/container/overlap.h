#pragma once

#include "archive/container/archive.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace quill::zip {

/// Compares the places of the members in the file, whose directory begins at `directory`, and sets `room`, `overlaps`
/// and `amended`.
///
/// A member whose size leads into the next one or into the directory gets the sizes and the CRC of its own header if
/// these fit. If they don't, a member that begins inside it overlaps, and one that runs into the directory ends there.
/// Time n log n; local headers are read only on suspicion.
void mark_overlaps(std::string_view bytes, std::uint64_t directory, std::vector<Member>& members);

}  // namespace quill::zip
