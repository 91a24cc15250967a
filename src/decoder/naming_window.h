#pragma once

#include "controls/control.h"
#include "shell/session.h"

#include <cstddef>
#include <string>

namespace quill::decoder {

/// A small window that serves jobs of several areas. Each job has a function that loads the window, sets its caption,
/// shows its own controls and fills their actions; a fresh window shows none.
struct Form4 : controls::Window {
    controls::Frame Frame1;                                           // naming an attachment: its panel
    controls::Label Label4;                                           // why a name is asked for
    controls::ControlArray<controls::Choice> Option1{0, 1, 2, 3, 4};  // usual extensions
    controls::Label Label2;                                           // leads to the box
    controls::TextBox Text1;                                          // an extension of the user's own
    controls::Label Label3;                                           // what the file looks like
    controls::Button Command3;                                        // OK
    controls::Button Command4;                                        // Cancel

    controls::Frame Frame2;         // adding a favorite directory: its panel
    controls::DriveListBox Drive1;  // its drive
    controls::DirListBox Dir1;      // the directory itself
    controls::Button Command1;      // make the favorite
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

    f("Frame2", "Favorite directory", w.Frame2);
    f("Drive1", "Drive of the favorite", w.Drive1);
    f("Dir1", "Directory of the favorite", w.Dir1);
    f("Command1", "Make a favorite of the directory", w.Command1);
    f("Command2", "Leave without a favorite", w.Command2);
}

/// Shows the window for naming the headerless file `EncodedPath`, whose first line has `line_length` characters, with
/// `hint` on what it looks like (may be empty). OK asks for a name, writes the copy with a header, says how to go on
/// and ends the process; so do Cancel and every refusal.
void show_naming_window(shell::Context& context, const std::string& hint, std::size_t line_length);

}  // namespace quill::decoder
