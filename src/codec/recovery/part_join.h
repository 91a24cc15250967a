#pragma once

#include "codec/recovery/found_file.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quill::codec {

/// Joins pieces: parts of split messages (message/partial, RFC 2046 5.2.2), and pieces of uuencoded, xxencoded and
/// Base64 files by the labels in their texts, their subjects or the names of the inputs. `files` are all files of the
/// inputs, in input order; `paths` are the inputs' names. A missing piece becomes a problem of the file. The result is
/// in the order of the first pieces.
Found join_parts(std::vector<FoundFile> files, std::span<const std::string_view> inputs,
                 std::span<const std::string> paths);

}  // namespace quill::codec
