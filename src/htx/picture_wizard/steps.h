#pragma once

#include "htx/picture_wizard/picture_wizard.h"

/// The steps of the picture wizard. Each is entered by Next and Back; its actions are connected only once.
namespace quill::htx {

/// Shows the controls of a step and hides those of all others.
void show_step(HtxWiz& w, WizardStep step);

// Step one: the pictures.

void enter_pictures(HtxWiz& w);
/// Goes to a directory; if it can't be read, the window stays in its own.
void enter_directory(HtxWiz& w, const std::string& directory);
void wire_pictures(HtxWiz& w);
/// Adds the pictures at `paths` that are not on the list yet.
void add_pictures(HtxWiz& w, const std::vector<std::string>& paths);

// Letters and colours.

void enter_letters(HtxWiz& w);
void wire_letters(HtxWiz& w);

// Titles.

/// Shows the first picture; no title is recorded yet. Offers earlier typed texts again.
void enter_titles(HtxWiz& w);
void wire_titles(HtxWiz& w);
/// Records the texts of the last picture; returns false if it has no title.
bool record_last_picture(HtxWiz& w);

// The order.

void enter_order(HtxWiz& w);
void wire_order(HtxWiz& w);
/// Returns true if each picture has its place in the new order.
bool order_is_whole(const HtxWiz& w);
/// Returns the numbers of List5.
std::vector<std::size_t> order_of(const HtxWiz& w);

// The new file.

void enter_saving(HtxWiz& w);
void wire_saving(HtxWiz& w);
/// Makes the book or the album, and closes the window on success.
void save(HtxWiz& w);

}  // namespace quill::htx
