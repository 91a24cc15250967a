#pragma once

#include "controls/control.h"
#include "shell/session.h"

namespace quill::decoder {

/// The guide that opens when decoding has failed: the program's findings, ways to look at the file, two repairs.
struct Form3 : controls::Window {
    // What to do about the file.
    controls::Label Label1;     // why this window is open
    controls::Label Label2;     // the program's findings in the file
    controls::Choice Option1;   // undo quoted-printable
    controls::Choice Option2;   // look at the file in a text editor
    controls::Choice Option3;   // open the tutorial
    controls::Choice option5;   // further options, after the user has looked at the file
    controls::Choice Option4;   // gets the value when a choice is done; never shown
    controls::Button Command1;  // end the program

    // The tutorial: what encoded files look like, and a text to practise on.
    controls::Frame Frame1;   // tutorial panel
    controls::Label Label3;   // what to look for and do
    controls::TextBox Text1;  // sample message to practise on

    // What the file looked like.
    controls::Frame Frame2;     // panel of the further options
    controls::Label Label4;     // the question
    controls::Choice Option6;   // boxes and weird characters
    controls::Choice Option7;   // even rows with nothing above them
    controls::Choice Option8;   // one long line with <BR> in it
    controls::Choice Option9;   // none of these
    controls::Choice Option10;  // leave the panel

    // The tutorial's menu, to practise with.
    controls::MenuItem fil;   // menu File
    controls::MenuItem ope;   // open
    controls::MenuItem sav;   // save: the right one
    controls::MenuItem sava;  // save as
    controls::MenuItem prnt;  // print
    controls::MenuItem edd;   // end

    /// Makes a fresh window: captions set, both panels and the menu hidden.
    Form3();
};

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(Form3& w, F&& f) {
    f("Label1", "Why this guide opened", w.Label1);
    f("Label2", "What the program found in the file", w.Label2);
    f("Option1", "Undo quoted-printable", w.Option1);
    f("Option2", "Look at the file in a text editor", w.Option2);
    f("Option3", "Show the tutorial", w.Option3);
    f("option5", "Show further options", w.option5);
    f("Option4", "Takes the choice when it is done", w.Option4);
    f("Command1", "Give up and end the program", w.Command1);

    f("Frame1", "Tutorial", w.Frame1);
    f("Label3", "How to tell an encoded file", w.Label3);
    f("Text1", "Sample message to practise on", w.Text1);

    f("Frame2", "Further options", w.Frame2);
    f("Label4", "Question about the file's looks", w.Label4);
    f("Option6", "It had weird characters", w.Option6);
    f("Option7", "It had even rows and nothing above them", w.Option7);
    f("Option8", "It had one long line with line break tags", w.Option8);
    f("Option9", "It looked different", w.Option9);
    f("Option10", "Back to the first options", w.Option10);

    f("fil", "File menu to practise with", w.fil);
    f("ope", "Open, to practise with", w.ope);
    f("sav", "Save, to practise with", w.sav);
    f("sava", "Save as, to practise with", w.sava);
    f("prnt", "Print, to practise with", w.prnt);
    f("edd", "End, to practise with", w.edd);
}

/// Opens the guide to `EncodedPath`, a file that could not be decoded. Every way out of it except its side programs and
/// its tutorial ends the process.
void show_repair_guide(shell::Context& context);

}  // namespace quill::decoder
