#pragma once

#include "controls/control.h"
#include "shell/session.h"
#include "viewer/decoded_pictures.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quill::viewer {

/// The arrangement of the picture windows in the frame.
enum class Arrangement : std::uint8_t {
    free,     ///< where they were opened and moved
    tiled,    ///< side by side, none hidden
    cascaded  ///< overlapping, each title visible
};

/// The viewer's frame, around all its other windows. Its menu bar shows the menus of the active window in it.
struct frmMDI : controls::Window {
    controls::ListBox List1;  // names of the files unpacked from the open album; never shown

    Arrangement arrangement = Arrangement::free;
    std::uint64_t arranged = 0;                 ///< counts the arrangements that the user requested
    bool tabbed = false;                        ///< the picture windows are pages behind tabs
    std::optional<bool> copies_album_pictures;  ///< the user's answer about pictures for a favorites list
    DecodedPictures pictures;                   ///< the windows' pictures, and their neighbours

    explicit frmMDI(shell::Context& context);
};

template <class F>
void visit_controls(frmMDI& w, F&& f) {
    f("List1", "Files of the open album", w.List1);
}

/// Arranges the picture windows, each as a window again if they were pages behind tabs.
void arrange(frmMDI& frame, Arrangement arrangement);

/// Shows the frame and returns it.
frmMDI& show_frame(shell::Context& context);

/// Closes the frame and all windows in it, and ends the use of an open album.
void close_frame(shell::Context& context);

/// Returns the viewer to the pictures of directories: closes the album and deletes the files unpacked from it. A single
/// unpacked file stays until the next album is opened.
void resetviewer(shell::Context& context);

/// Removes a deleted file from the list of unpacked ones, with its thumbnail.
void forget_unpacked(frmMDI& frame, const std::string& name);

/// Returns the directory that albums are unpacked into.
std::string album_directory(const shell::Session& session);

}  // namespace quill::viewer
