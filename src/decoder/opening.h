#pragma once

#include "shell/session.h"

#include <string>

namespace quill::decoder {

/// Asks about the file at `path` if its type can contain commands or scripts. Returns true if it may be opened.
bool may_open(shell::Context& context, const std::string& path);

}  // namespace quill::decoder
