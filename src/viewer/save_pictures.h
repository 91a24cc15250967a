#pragma once

#include "controls/windows.h"

namespace quill::viewer {

/// The window that copies pictures; other areas show its progress panel alone.
struct SavPic : controls::Window {
    controls::Picture Picture1;  // panel of the copy jobs
    controls::Frame Frame1;      // progress panel
    controls::Picture Picture5;  // bar of all files
    controls::Picture Picture6;  // its filled part
    controls::Label Label2;      // percent of all files
    controls::Picture Picture3;  // bar of the current file
    controls::Picture Picture2;  // its filled part
    controls::Label Label5;      // percent of the current file
    controls::Label doing;       // what is being done
    controls::Button stop;       // stop it
    bool stop_wanted = false;    // it was pressed
};

/// The length of a full bar, in twips.
constexpr int full_bar = 3750;

/// Loads the window with nothing but its progress panel and shows it.
inline SavPic& show_progress_panel(controls::Windows& windows) {
    SavPic& w = windows.load<SavPic>();
    w.Picture5.width = w.Picture3.width = full_bar;
    w.Picture1.visible = false;
    w.doing.visible = w.stop.visible = false;
    w.stop.caption = "Stop";
    w.Frame1.visible = true;
    w.visible = true;
    return w;
}

template <class F>
void visit_controls(SavPic& w, F&& f) {
    f("Picture1", "Copy panel", w.Picture1);
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
