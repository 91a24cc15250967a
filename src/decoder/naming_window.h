#pragma once

#include "shell/session.h"
#include "shell/small_window.h"

#include <cstddef>
#include <string>

namespace quill::decoder {

using shell::Form4;

/// Shows the window for naming the headerless file `EncodedPath`, whose first line has `line_length` characters, with
/// `hint` on its likely contents (may be empty). OK asks for a name, writes the copy with a header, explains how to
/// continue and ends the process; Cancel and every refusal end it too.
void show_naming_window(shell::Context& context, const std::string& hint, std::size_t line_length);

}  // namespace quill::decoder
