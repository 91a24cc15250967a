#pragma once

#include "platform/platform.h"
#include "text/result.h"

#include <string>

namespace quill::viewer {

/// Copies the file at `source` into `directory` under its own name, or under the next free name of the row `name.ext`,
/// `name (2).ext`, ... Returns the copy's path. Fails with the system's reason; nothing half written stays.
Result<std::string> copy_into(const std::string& source, const std::string& directory);

/// Does that for the user: reports another name than the file's own, and a failure with its reason.
void say_where_copied(platform::Platform& platform, const std::string& source, const std::string& directory);

}  // namespace quill::viewer
