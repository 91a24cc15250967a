#pragma once

#include "pics/writing.h"
#include "shell/session.h"

namespace quill::viewer {

/// What came of writing an album.
enum class AlbumEnd {
    made,        ///< it is there
    name_taken,  ///< a file of its name was there already, and still is
    not_made     ///< it could not be written, or the user stopped it; there is none
};

/// Writes the album, whose items are measured, and shows how far it is in the progress panel. Reports what went wrong.
AlbumEnd run_album(shell::Context& context, pics::AlbumRequest request);

}  // namespace quill::viewer
