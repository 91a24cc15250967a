#pragma once

#include <string>

namespace quill::cli {

/// Returns what the file at `path` looks like by its first bytes: "a PDF document", "an empty file", "plain text".
std::string appearance(const std::string& path);

}  // namespace quill::cli
