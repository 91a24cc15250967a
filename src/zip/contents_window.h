#pragma once

#include "controls/control.h"
#include "shell/session.h"

namespace quill::zip {

/// The contents report: shows what an archive contains.
struct Form1 : controls::Window {
    controls::ListBox List1;    // a row for each member
    controls::Label Label1;     // size of all members, uncompressed
    controls::Label Label2;     // size of the archive
    controls::Label Label3;     // "Size Compressed:"
    controls::Label Label4;     // "Size Uncompressed:"
    controls::Label Label5;     // count of the members
    controls::Label Label6;     // heading "Date/time"
    controls::Label Label7;     // heading "Size now"
    controls::Label Label8;     // heading "Original Size"
    controls::Label Label9;     // heading "File names"
    controls::Button Command1;  // close

    /// Loads the window: in the middle of the screen, with the size of the current file. Closing it ends the process in
    /// a run that only views. `context` must outlive it.
    explicit Form1(shell::Context& context);
};

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(Form1& w, F&& f) {
    f("List1", "Contents of the archive", w.List1);
    f("Label1", "Size of all members", w.Label1);
    f("Label2", "Size of the archive", w.Label2);
    f("Label3", "Heading of the archive's size", w.Label3);
    f("Label4", "Heading of the members' size", w.Label4);
    f("Label5", "Count of the members", w.Label5);
    f("Label6", "Column of dates", w.Label6);
    f("Label7", "Column of compressed sizes", w.Label7);
    f("Label8", "Column of original sizes", w.Label8);
    f("Label9", "Column of names", w.Label9);
    f("Command1", "Close", w.Command1);
}

}  // namespace quill::zip
