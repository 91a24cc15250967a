#pragma once

#include "text/result.h"

#include <string>

namespace quill::cli {

/// Returns the first line of the file at `path`, without its end; an empty text where `path` is empty. An empty line
/// is refused: it would store members unencrypted.
Result<std::string> read_password(const std::string& path);

}  // namespace quill::cli
