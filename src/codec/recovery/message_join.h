#pragma once

#include "codec/recovery/found_file.h"

#include <span>
#include <string_view>
#include <vector>

namespace quill::codec {

/// Replaces the pieces of split messages (message/partial, RFC 2046 5.2.2) with the files in the joined messages, and
/// reports which pieces are missing.
std::vector<FoundFile> join_messages(std::vector<FoundFile> files, std::span<const std::string_view> inputs);

}  // namespace quill::codec
