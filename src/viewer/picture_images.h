#pragma once

#include "viewer/picture_window.h"

/// The images that a picture window shows of a file with several: frames of an animation one after another, or the page
/// that the user chooses.
namespace quill::viewer {

/// Shows a picture at its natural size, with a note below it if it is incomplete.
void show_pixels(frmPic& window, const platform::Picture& picture);

/// Starts with the first image of a file, which is shown: runs the animation, or offers the pages.
void begin_images(frmPic& window, const platform::Picture& first);

/// Shows the page `step` pages further, if there is one.
void turn_page(frmPic& window, int step);

/// Handles the end of a frame's time.
void end_frame(frmPic& window);

/// Stops the animation at its frame, and drops pending requests.
void stop_images(frmPic& window);

}  // namespace quill::viewer
