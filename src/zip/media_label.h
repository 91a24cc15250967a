#pragma once

#include <string>

namespace quill::zip {

struct arcview;

/// Sends `command` to the media device and returns its reply: the text up to the first NUL.
std::string MediaCommand(arcview& w, const std::string& command);

/// Plays the device of the window's MediaAlias if it is paused, and pauses it if it is playing.
void toggle_media(arcview& w);

/// Closes the device and shows the archive's path in the label again.
void close_media(arcview& w);

}  // namespace quill::zip
