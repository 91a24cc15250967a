#pragma once

#include <string>

namespace quill::qpunwrap {

/// Shows `text` in a box of the desktop where nobody would see it otherwise: when none of standard input, output and
/// error is a terminal and there is a display. Does not wait for the box; without a program that shows one, does
/// nothing.
void announce(const std::string& text);

}  // namespace quill::qpunwrap
