#pragma once

#include "controls/windows.h"
#include "shell/session.h"

namespace quill::viewer {

/// The window that manages the favorites lists and copies their pictures; other areas show only its progress panel.
struct SavPic : controls::Window {
    controls::Picture Picture1;     // panel of the copy job
    controls::DriveListBox Drive1;  // drive to copy to
    controls::DirListBox Dir1;      // directory to copy to
    controls::FileListBox File1;    // its files
    controls::Button Command1;      // copy the pictures there
    controls::Button Command10;     // make a directory there
    controls::Button Command2;      // leave the copy job

    controls::Frame Frame2;       // panel of the lists
    controls::Label Label3;       // explains a double click
    controls::ListBox List1;      // names of the lists
    controls::FileListBox File2;  // their files; never shown
    controls::Label Label4;       // number of pictures on the list
    controls::Button Command6;    // create a list
    controls::Button Command7;    // delete the list
    controls::Button Command8;    // edit the list
    controls::Button Command5;    // explain lists
    controls::Button Command9;    // leave the lists

    controls::Frame Frame1;      // progress panel
    controls::Picture Picture5;  // bar of all files
    controls::Picture Picture6;  // its filled part
    controls::Label Label2;      // percent of all files
    controls::Picture Picture3;  // bar of the current file
    controls::Picture Picture2;  // its filled part
    controls::Label Label5;      // percent of the current file
    controls::Label doing;       // current step
    controls::Button stop;       // stop it
    bool stop_wanted = false;    // the button was pressed

    SavPic();
};

/// The length of a full bar, in twips.
constexpr int full_bar = 3750;

/// Loads the window in the middle of the screen, with all of its panels hidden.
SavPic& load_pictures_window(shell::Context& context);

/// Loads the window with only its progress panel and shows it.
SavPic& show_progress_panel(controls::Windows& windows);

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(SavPic& w, F&& f) {
    f("Picture1", "Copy panel", w.Picture1);
    f("Drive1", "Drive to copy to", w.Drive1);
    f("Dir1", "Directory to copy to", w.Dir1);
    f("File1", "Files in the directory", w.File1);
    f("Command1", "Copy the pictures there", w.Command1);
    f("Command10", "Make a directory there", w.Command10);
    f("Command2", "Leave without copying", w.Command2);

    f("Frame2", "Favorite Picture Lists", w.Frame2);
    f("Label3", "What a double click does", w.Label3);
    f("List1", "Favorite Picture Lists", w.List1);
    f("File2", "Files of the lists", w.File2);
    f("Label4", "Number of pictures", w.Label4);
    f("Command6", "Create a list", w.Command6);
    f("Command7", "Delete the list", w.Command7);
    f("Command8", "Edit the list", w.Command8);
    f("Command5", "Help with lists", w.Command5);
    f("Command9", "Close the window", w.Command9);

    f("Frame1", "Progress panel", w.Frame1);
    f("Picture5", "Progress of all files", w.Picture5);
    f("Picture6", "Progress made of all files", w.Picture6);
    f("Label2", "Percent of all files", w.Label2);
    f("Picture3", "Progress of the current file", w.Picture3);
    f("Picture2", "Progress made of the current file", w.Picture2);
    f("Label5", "Percent of the current file", w.Label5);
    f("doing", "What is being done", w.doing);
    f("stop", "Stop what is being done", w.stop);
}

}  // namespace quill::viewer
