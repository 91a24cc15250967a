#pragma once

#include "zip/archive.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace quill::zip {

/// Sets `overlaps` of each member whose bytes begin before those of another end, or run past `directory`.
/// Time n log n; local headers are looked at only where there is a suspicion.
void mark_overlaps(std::string_view bytes, std::uint64_t directory, std::vector<Member>& members);

}  // namespace quill::zip
