#pragma once

#include <string>

namespace quill::qpunwrap {

/// Shows `text` in a box of the desktop where nobody would see it otherwise: there is a display, and this process is
/// not in the foreground of a terminal (one that it has merely inherited, as a program of the desktop may, does not
/// count). Does not wait for the box; without a program that shows one, does nothing.
void announce(const std::string& text);

/// `text` as a box can show it: UTF-8, and of a long text its beginning and its end, with a line between them that says
/// how many were left out. Always short enough to be an argument of a program.
std::string box_text(const std::string& text);

}  // namespace quill::qpunwrap
