#pragma once

#include "controls/control.h"
#include "shell/session.h"

namespace quill::viewer {

struct frmPic;
struct tittwo;

/// Sets the captions and actions of a Favorites menu's items (1 to 7, 2 and 6 are lines).
void caption_favorites(controls::ControlArray<controls::MenuItem>& items);
void wire_favorites(shell::Context& context, controls::ControlArray<controls::MenuItem>& items);

/// Adds the window's picture to the current list. A picture unpacked from an album is first copied to a permanent
/// place, if the user agrees.
void add_picture_to_favorites(frmPic& window);

/// Removes the last clicked picture from the current list.
void remove_selected_favorite(tittwo& column);

/// Explains lists, the column's tabs, albums and books.
void favhelp(platform::Platform& platform);

}  // namespace quill::viewer
