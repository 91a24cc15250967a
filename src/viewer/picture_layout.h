#pragma once

#include "viewer/picture_window.h"

/// The arithmetic of a picture window: how large its picture is drawn, and which part of it is visible. Nothing here
/// changes a file. Windows are measured in twips, pictures in the screen's own pixels.
namespace quill::viewer {

/// A zoom level of the menus. The factor decides, even if the caption differs.
struct ZoomLevel {
    const char* caption;
    double factor;  ///< of the natural size
};

/// Returns level `i`, from 1 to 19.
const ZoomLevel& zoom_level(int i);

/// Gives the pane the window's free area, and shows the scroll bars that the picture needs, at their beginnings.
void lay_out(frmPic& window);

/// Moves the picture after a scroll bar was moved.
void follow_scroll_bars(frmPic& window);

/// Make the picture larger or smaller by a tenth of its displayed size.
void zoom_in(frmPic& window);
void zoom_out(frmPic& window);

/// Displays the picture at a level of its natural size.
void set_zoom_level(frmPic& window, int i);

/// Displays the picture at `factor` of the displayed size, so that the point `x`, `y` of the pane (in pixels from its
/// top left corner) stays in place.
void zoom_at(frmPic& window, double factor, double x, double y);

/// Displays the picture at its natural size, keeping the middle of the pane in place.
void zoom_to_natural_size(frmPic& window);

/// Displays the picture as large as the pane allows, in its proportions, but not enlarged.
void zoom_to_fit(frmPic& window);

/// Moves the picture in its pane right and down, in pixels.
void pan(frmPic& window, double right, double down);

/// Switches between the fit mode and the normal one.
void toggle_fit_mode(frmPic& window);

/// Mirrors the displayed picture.
void flip(frmPic& window, Axis axis);

/// The limits of the screen for a new window.
struct Placing {
    int below = 0;           ///< twips of the screen's height to keep free
    int beside = 0;          ///< twips of the screen's width to keep free
    bool at_column = false;  ///< the window always begins at the column's right edge
};

constexpr Placing from_column{1300, 200, false};
constexpr Placing from_opener{1350, 500, true};

/// Gives the window the size of its picture, within the screen's limits, beside a column of `column_width` twips.
void place_beside_column(frmPic& window, const Placing& placing, int column_width);

}  // namespace quill::viewer
