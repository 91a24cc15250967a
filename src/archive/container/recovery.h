#pragma once

#include "archive/container/archive.h"

#include <cstddef>
#include <deque>
#include <string_view>

namespace quill::zip {

/// Finds members by their local headers, from the first byte to the last. For files whose directory is missing or cut.
/// Sizes that a local header leaves out are found through the data descriptor (APPNOTE 4.3.9), else bounded by the next
/// header. Stops after `most` members. Time is linear in `bytes` but for a fixed budget.
std::deque<Member> scan_local_headers(std::string_view bytes, std::size_t most);

}  // namespace quill::zip
