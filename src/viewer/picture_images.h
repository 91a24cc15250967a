#pragma once

#include "viewer/picture_window.h"

/// What a picture window shows of a file with several images: frames of an animation one after the other, or the page
/// that the user chooses.
namespace quill::viewer {

/// Shows a picture at its natural size, and a word below it where it is not whole.
void show_pixels(frmPic& window, const platform::Picture& picture);

/// Begins with the first image of a file, which is shown: runs the animation, or offers the pages.
void begin_images(frmPic& window, const platform::Picture& first);

/// Shows the page `step` pages on, if there is one.
void turn_page(frmPic& window, int step);

/// The time of a frame is over.
void end_frame(frmPic& window);

/// Stops the animation where it is, and drops what is asked for.
void stop_images(frmPic& window);

}  // namespace quill::viewer
