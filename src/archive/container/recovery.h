#pragma once

#include "archive/container/archive.h"

#include <cstddef>
#include <deque>
#include <string_view>

namespace quill::zip {

/// Finds members by their local headers, from the first byte to the last, for files whose directory is missing or cut.
/// Sizes that a local header omits are found through the data descriptor (APPNOTE 4.3.9), else bounded by the next
/// header. Stops after `most` members. Time is linear in `bytes` apart from a fixed budget.
std::deque<Member> scan_local_headers(std::string_view bytes, std::size_t most);

}  // namespace quill::zip
