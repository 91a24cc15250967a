#pragma once

#include "shell/session.h"

#include <string>

namespace quill::decoder {

/// Asks about the file at `path` where its type can carry commands or scripts. Returns whether it may be opened.
bool may_open(shell::Context& context, const std::string& path);

}  // namespace quill::decoder
