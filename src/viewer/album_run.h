#pragma once

#include "pics/writing.h"
#include "shell/session.h"

namespace quill::viewer {

/// The result of writing an album.
enum class AlbumEnd {
    made,        ///< the album was written
    name_taken,  ///< a file of its name existed, and was kept
    not_made     ///< it could not be written, or the user stopped it; there is no album
};

/// Writes the album, whose items are measured, and shows the progress in the progress panel. Reports failures.
AlbumEnd run_album(shell::Context& context, pics::AlbumRequest request);

}  // namespace quill::viewer
