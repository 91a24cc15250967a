#pragma once

#include "codec/recovery/found_file.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quill::codec {

/// Marks those parts in Base64 that are no files by themselves but pieces of one over several posts, each with a header
/// that names the file: "a.zip (2/3)". Full rows to the end without padding are what a piece ends in, and bytes of no
/// known kind of file are what a later one begins with. `paths` are the inputs' names, which may number them.
void mark_mime_pieces(std::span<FoundFile> files, std::span<const std::string_view> inputs,
                      std::span<const std::string> paths);

}  // namespace quill::codec
