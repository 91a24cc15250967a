#pragma once

#include <string>

namespace quill::zip {

struct arcview;

/// Sends `command` to the media device and returns its reply: the text up to the first NUL.
std::string MediaCommand(arcview& w, const std::string& command);

/// Plays the device of the window's MediaAlias where it is paused, and pauses it where it plays.
void toggle_media(arcview& w);

/// Closes the device. The label shows the path of the archive again.
void close_media(arcview& w);

}  // namespace quill::zip
