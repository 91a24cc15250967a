#pragma once

#include "platform/platform.h"
#include "text/result.h"

#include <string>

namespace quill::viewer {

/// Copies the file at `source` into `directory` under its own name, or under the next free name of the series
/// `name.ext`, `name (2).ext`, ... Returns the copy's path. Fails with the system's reason, leaving no partial copy.
Result<std::string> copy_into(const std::string& source, const std::string& directory);

/// Does the same and reports to the user a name that differs from the file's own, or a failure with its reason.
void say_where_copied(platform::Platform& platform, const std::string& source, const std::string& directory);

}  // namespace quill::viewer
