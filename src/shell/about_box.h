#pragma once

#include "controls/control.h"
#include "shell/session.h"

#include <string_view>

namespace quill::shell {

/// The version of the program: "1.0.0".
std::string_view version();

/// Shows the program's name, version and licence.
struct AboutBox : controls::Window {
    controls::Label Label1;     // name of the program
    controls::Label Label2;     // version
    controls::Label Label3;     // its purpose
    controls::Label Label4;     // licence
    controls::Button Command1;  // close the window

    AboutBox();
};

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(AboutBox& w, F&& f) {
    f("Label1", "Name of the program", w.Label1);
    f("Label2", "Version", w.Label2);
    f("Label3", "What the program does", w.Label3);
    f("Label4", "Licence", w.Label4);
    f("Command1", "Close", w.Command1);
}

/// Opens the window, or shows it again.
void show_about_box(Context& context);

}  // namespace quill::shell
