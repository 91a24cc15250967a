#pragma once

#include "text/result.h"

#include <string>

namespace quill::cli {

/// Returns the first line of the file at `path` without its line end, or an empty text if `path` is empty. Rejects an
/// empty line, which would store members unencrypted.
Result<std::string> read_password(const std::string& path);

}  // namespace quill::cli
