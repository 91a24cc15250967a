#pragma once

#include "viewer/picture_layout.h"
#include "viewer/picture_window.h"

#include <string>

namespace quill::viewer {

/// Appends a slot to `PicsTable` and returns its number: 1 for the first.
int newdocslot(shell::Session& session);

/// Makes a picture window in its own slot, without a picture.
frmPic& new_picture_window(shell::Context& context);

/// Opens the picture at `path` in its own window. The window is shown when the picture is decoded, or decoding has
/// failed.
frmPic& opendoc(shell::Context& context, const std::string& path, const std::string& title);

/// Decodes the picture at `path`; the window then takes it and its size.
void load_into_new_window(frmPic& window, const std::string& path, const Placing& placing);

/// Shows the next picture of the column's list in the same window; with a negative `step` an earlier one. Does nothing
/// if there is none.
void show_neighbour(frmPic& window, int step);

}  // namespace quill::viewer
