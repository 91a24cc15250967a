#pragma once

#include "htx/picture_wizard/picture_wizard.h"

#include <string>

/// The products of the picture wizard's last step. Each reports its result and unloads the window on success.
namespace quill::htx {

/// Makes the book at `path`, and if the user wants them its pages and copies of its pictures beside it.
void make_book(HtxWiz& w, const std::string& path);

/// Makes the album at `path`: at once, or after decoding its thumbnails.
void make_album(HtxWiz& w, const std::string& path);

/// Reports that a file of that name exists and asks for another name.
void refuse_name(HtxWiz& w, const std::string& path);

/// Ends the wizard's work: says "Done." and unloads the window.
void finish(HtxWiz& w);

}  // namespace quill::htx
