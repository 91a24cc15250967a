#pragma once

#include <string>

namespace quill::cli {

/// Returns a clause about the file at `path` by its first bytes: "is empty", "looks like a PDF document".
std::string appearance(const std::string& path);

}  // namespace quill::cli
