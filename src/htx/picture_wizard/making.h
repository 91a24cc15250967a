#pragma once

#include "htx/picture_wizard/picture_wizard.h"

#include <string>

/// What the last step of the picture wizard makes. Each reports how it went; where the file is there, the window is
/// unloaded.
namespace quill::htx {

/// Makes the book at `path`, and where the user wants them its pages and copies of its pictures beside it.
void make_book(HtxWiz& w, const std::string& path);

/// Makes the album at `path`: at once, or when its thumbnails have been decoded.
void make_album(HtxWiz& w, const std::string& path);

/// Says that a file of the name is there already and has another one typed.
void refuse_name(HtxWiz& w, const std::string& path);

/// Ends the wizard's work: "Done.", and the window is unloaded.
void finish(HtxWiz& w);

}  // namespace quill::htx
