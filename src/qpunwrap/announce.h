#pragma once

#include <string>

namespace quill::qpunwrap {

/// Shows `text` in a box of the desktop if nobody would see it otherwise: there is a display, and this process is not
/// in the foreground of a terminal (one that it has merely inherited, as a program of the desktop may, does not count).
/// Does not wait for the box; does nothing if no program can show one.
void announce(const std::string& text);

/// Returns `text` in a form that a box can show: UTF-8, and of a long text its beginning and its end, with a line
/// between them that states how many lines were left out. Always short enough for a program's argument.
std::string box_text(const std::string& text);

}  // namespace quill::qpunwrap
