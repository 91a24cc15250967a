#pragma once

#include "codec/yenc/yenc_post.h"

#include <string_view>

namespace quill::codec::yenc {

/// Returns true where characters were lost or came in: some line but the last has another length than the others.
/// Encoders break a line once it has as many characters, or as many bytes, as `=ybegin` states; where the first line
/// has another length, that one counts.
bool has_uneven_rows(std::string_view text, const Post& post);

}  // namespace quill::codec::yenc
