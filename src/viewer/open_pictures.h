#pragma once

#include "controls/control.h"
#include "platform/pictures.h"
#include "shell/session.h"
#include "viewer/shown_picture.h"

#include <string>

namespace quill::viewer {

/// The window that brings pictures into the viewer: a directory, a picture or an album.
struct frmOpen : controls::Window {
    controls::DriveListBox Drive1;  // drive
    controls::DirListBox Dir1;      // directory; also becomes the process's current one
    controls::FileListBox File1;    // its pictures
    controls::CheckBox all_kinds;   // list every kind of picture
    controls::ListBox List1;        // directories to show in the column; never shown
    controls::Button Command1;      // open
    controls::Button Command2;      // cancel
    ShownPicture preview;           // picture selected
    controls::Label note;           // facts about it

    platform::Pictures::Ticket ticket = 0;  ///< of the request for the preview; 0 if none is waiting

    explicit frmOpen(shell::Context& shared);
    ~frmOpen() override;

    shell::Context context;
};

/// Shows the window, in the frame.
frmOpen& show_open_pictures(shell::Context& context);

/// Closes it if it is open.
void close_open_pictures(shell::Context& context);

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(frmOpen& w, F&& f) {
    f("Drive1", "Drive", w.Drive1);
    f("Dir1", "Directory", w.Dir1);
    f("File1", "Pictures in the directory", w.File1);
    f("all_kinds", "List every kind of picture", w.all_kinds);
    f("List1", "Directories to show", w.List1);
    f("Command1", "Open", w.Command1);
    f("Command2", "Cancel", w.Command2);
    f("preview", "Picture selected", w.preview);
    f("note", "What is known of the picture", w.note);
}

}  // namespace quill::viewer
