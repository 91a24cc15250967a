#pragma once

#include "codec/input/line_cursor.h"
#include "codec/recovery/found_file.h"

#include <cstddef>
#include <cstdint>

namespace quill::codec {

/// Deeper nested multiparts are read as text.
constexpr std::size_t deepest_nesting = 100;

/// Finds every encoded file, and every text of a message, in one pass over the cursor's segments: messages and
/// multiparts (RFC 2046) to any depth up to `deepest_nesting`, without recursion, and the formats of `text_formats` in
/// all running text. The results are in the order in which they begin. Time is linear in the input, and memory grows
/// only with what is kept: up to `room` files. `part_number` is what the name of the input states; 0 if nothing.
Found scan(LineCursor& cursor, Texts texts = Texts::kept, std::size_t room = most_files, std::uint32_t part_number = 0);

}  // namespace quill::codec
