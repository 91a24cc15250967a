#pragma once

#include "codec/yenc_post.h"

#include <string_view>

namespace quill::codec::yenc {

/// Returns true where the data's lines, all but the last, are neither as long as an encoder makes them, which breaks a
/// line once it has as many characters as `=ybegin` states, nor hold so many bytes each: characters were lost or came
/// in. The length of the first line counts where another is stated.
bool has_uneven_rows(std::string_view text, const Post& post);

}  // namespace quill::codec::yenc
