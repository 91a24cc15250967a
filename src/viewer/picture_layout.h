#pragma once

#include "viewer/picture_window.h"

/// The arithmetic of a picture window: how large its picture is drawn, and what of it is in sight. Nothing here changes
/// a file. Windows are measured in twips, pictures in the screen's own pixels.
namespace quill::viewer {

/// A zoom level as the menus name it. The factor decides, also where it differs from the caption.
struct ZoomLevel {
    const char* caption;
    double factor;  ///< of the natural size
};

/// Level `i`, from 1 to 19.
const ZoomLevel& zoom_level(int i);

/// Gives the pane what the window leaves it, and shows the scroll bars that the picture needs, at their beginnings.
void lay_out(frmPic& window);

/// A scroll bar was moved: the picture follows.
void follow_scroll_bars(frmPic& window);

/// Makes the picture larger or smaller by a tenth of its displayed size.
void zoom_in(frmPic& window);
void zoom_out(frmPic& window);

/// Displays the picture at a level of its natural size.
void set_zoom_level(frmPic& window, int i);

/// Displays the picture at `factor` of the displayed size, so that the point `x`, `y` of the pane (in pixels from its
/// top left corner) stays where it is.
void zoom_at(frmPic& window, double factor, double x, double y);

/// Displays the picture at its natural size, the middle of the pane staying where it is.
void zoom_to_natural_size(frmPic& window);

/// Displays the picture as large as the pane allows, in its proportions, but not larger than it is.
void zoom_to_fit(frmPic& window);

/// Moves the picture in its pane by pixels to the right and down.
void pan(frmPic& window, double right, double down);

/// Changes between the fit mode and the normal one.
void toggle_fit_mode(frmPic& window);

/// Mirrors what is displayed.
void flip(frmPic& window, Axis axis);

/// The limits that the screen sets to a window when it opens.
struct Placing {
    int below = 0;           ///< twips of the screen's height that stay free
    int beside = 0;          ///< twips of the screen's width that stay free
    bool at_column = false;  ///< the window begins at the column's right edge in any case
};

constexpr Placing from_column{1300, 200, false};
constexpr Placing from_opener{1350, 500, true};

/// Gives the window the size of its picture, within the screen's limits, beside a column of `column_width` twips.
void place_beside_column(frmPic& window, const Placing& placing, int column_width);

}  // namespace quill::viewer
