#pragma once

#include "controls/control.h"

namespace quill::shell {

/// A small window for jobs of several areas. Each job has a function that loads the window, sets its caption, shows its
/// own controls and fills their actions; a fresh window shows none.
struct Form4 : controls::Window {
    controls::Frame Frame1;                                           // naming an attachment: its panel
    controls::Label Label4;                                           // the reason for asking
    controls::ControlArray<controls::Choice> Option1{0, 1, 2, 3, 4};  // usual extensions
    controls::Label Label2;                                           // points to the box
    controls::TextBox Text1;                                          // an extension of the user's own
    controls::Label Label3;                                           // hint on the file's contents
    controls::Button Command3;                                        // OK
    controls::Button Command4;                                        // Cancel

    controls::Frame Frame2;         // choosing a directory, for a favorite or for a copy: its panel
    controls::Label Label1;         // the file to copy
    controls::DriveListBox Drive1;  // drive of the directory
    controls::DirListBox Dir1;      // the directory itself
    controls::Button Command1;      // make the favorite, or the copy
    controls::Button Command2;      // Cancel

    Form4();
};

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(Form4& w, F&& f) {
    f("Frame1", "Type of the decoded file", w.Frame1);
    f("Label4", "Why a type is asked for", w.Label4);
    w.Option1.for_each([&](int i, controls::Choice& choice) {
        f(controls::member_name("Option1", i), "File name extension", choice);
    });
    f("Label2", "Leads to the box for another extension", w.Label2);
    f("Text1", "Extension of your own", w.Text1);
    f("Label3", "What the file looks like", w.Label3);
    f("Command3", "Go on with this type", w.Command3);
    f("Command4", "Give up and end the program", w.Command4);

    f("Frame2", "Choice of a directory", w.Frame2);
    f("Label1", "File to copy", w.Label1);
    f("Drive1", "Drive of the directory", w.Drive1);
    f("Dir1", "Directory", w.Dir1);
    f("Command1", "Take this directory", w.Command1);
    f("Command2", "Leave the window", w.Command2);
}

}  // namespace quill::shell
