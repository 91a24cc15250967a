#pragma once

#include "controls/control.h"
#include "shell/session.h"
#include "viewer/decoded_pictures.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quill::viewer {

/// How the picture windows lie in the frame.
enum class Arrangement : std::uint8_t {
    free,     ///< as they were opened and moved
    tiled,    ///< beside each other, none hidden
    cascaded  ///< one over the other, each title in view
};

/// The viewer's frame, around all its other windows. Its menu bar shows the menus of the window that is active in it.
struct frmMDI : controls::Window {
    controls::ListBox List1;  // names of the files unpacked from the open album; never seen

    Arrangement arrangement = Arrangement::free;
    std::uint64_t arranged = 0;                 ///< counts the times that the user had the windows arranged
    bool tabbed = false;                        ///< the picture windows are pages behind tabs
    std::optional<bool> copies_album_pictures;  ///< the user's answer, for pictures that go on a favorites list
    DecodedPictures pictures;                   ///< those of the windows, and their neighbours

    explicit frmMDI(shell::Context& context);
};

template <class F>
void visit_controls(frmMDI& w, F&& f) {
    f("List1", "Files of the open album", w.List1);
}

/// Has the picture windows arranged, each a window again where they were pages behind tabs.
void arrange(frmMDI& frame, Arrangement arrangement);

/// Returns the frame, which is shown from now on.
frmMDI& show_frame(shell::Context& context);

/// Closes the frame and all windows in it, and ends the use of an open album.
void close_frame(shell::Context& context);

/// Returns the viewer to the pictures of directories: no album is open, and what was unpacked from one is deleted. A
/// single unpacked file stays until the next album is opened.
void resetviewer(shell::Context& context);

/// Takes a file that is gone off the list of unpacked ones, with its thumbnail.
void forget_unpacked(frmMDI& frame, const std::string& name);

/// The directory that albums are unpacked into.
std::string album_directory(const shell::Session& session);

}  // namespace quill::viewer
