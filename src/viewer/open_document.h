#pragma once

#include "viewer/picture_layout.h"
#include "viewer/picture_window.h"

#include <string>

namespace quill::viewer {

/// Appends a slot to `PicsTable` and returns its number: 1 for the first.
int newdocslot(shell::Session& session);

/// A picture window in a slot of its own, without a picture.
frmPic& new_picture_window(shell::Context& context);

/// Opens the picture at `path` in a window of its own. The window is shown when the picture is decoded, or has turned
/// out to be none.
frmPic& opendoc(shell::Context& context, const std::string& path, const std::string& title);

/// Has the picture at `path` decoded; the window takes it and its size when that is done.
void load_into_new_window(frmPic& window, const std::string& path, const Placing& placing);

/// Shows the next picture of the column's list in the same window; with a negative `step` one before it. Nothing where
/// there is none.
void show_neighbour(frmPic& window, int step);

}  // namespace quill::viewer
