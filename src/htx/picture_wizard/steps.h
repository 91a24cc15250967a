#pragma once

#include "htx/picture_wizard/picture_wizard.h"

/// The steps of the picture wizard. Each is entered by Next and Back; what the user does in it is wired once.
namespace quill::htx {

/// Shows the controls of a step and hides those of all others.
void show_step(HtxWiz& w, WizardStep step);

// Step one: the pictures.

void enter_pictures(HtxWiz& w);
/// Goes to a directory; one that can't be read leaves the window where it is.
void enter_directory(HtxWiz& w, const std::string& directory);
void wire_pictures(HtxWiz& w);
/// Adds the pictures at `paths` that are not on the list yet.
void add_pictures(HtxWiz& w, const std::vector<std::string>& paths);

// Letters and colours.

void enter_letters(HtxWiz& w);
void wire_letters(HtxWiz& w);

// Titles.

/// Shows the first picture; no title is recorded yet. What was typed before is offered again.
void enter_titles(HtxWiz& w);
void wire_titles(HtxWiz& w);
/// Records the words of the last picture; returns false where there is no title.
bool record_last_picture(HtxWiz& w);

// The order.

void enter_order(HtxWiz& w);
void wire_order(HtxWiz& w);
/// Returns whether each picture has its place in the new order.
bool order_is_whole(const HtxWiz& w);
/// Returns the numbers of List5.
std::vector<std::size_t> order_of(const HtxWiz& w);

// The new file.

void enter_saving(HtxWiz& w);
void wire_saving(HtxWiz& w);
/// Makes the book or the album, and closes the window where that succeeds.
void save(HtxWiz& w);

}  // namespace quill::htx
