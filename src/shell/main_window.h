#pragma once

#include "codec/attachment.h"
#include "controls/control.h"
#include "files/file_stamp.h"
#include "shell/star_field.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quill::shell {

using controls::Action;

/// The answer of an anti-virus program about a file.
enum class ScanAnswer : std::uint8_t {
    nothing_found,
    found,
    not_checked,  ///< no answer, for whatever reason
};

/// A check by an anti-virus program, of the file at that time.
struct Scan {
    ScanAnswer answer = ScanAnswer::not_checked;
    std::string text;        ///< one sentence without a full stop
    files::FileStamp stamp;  ///< of the file
};

/// The facts about the file in a row of the results.
struct ResultRecord {
    std::string directory;                  ///< its directory
    std::optional<codec::Outcome> outcome;  ///< the result of decoding it; absent if no decoder checked it
    std::optional<Scan> scan = {};
    std::string source = {};  ///< the name of the message that it was decoded from; empty if unknown
    unsigned run = 0;         ///< counts the runs of the decoder; 0 if unknown
};

/// The main window, a single window whose panels take turns. Holds state that many operations read and set;
/// main_workflow.h fills its actions.
struct swit : controls::Window {
    // The idle panel.
    controls::Picture Picture1;                                     // idle panel: the star field with the options
    controls::ControlArray<controls::Label> apt{1, 2, 3, 4, 5, 6};  // the options, as displayed
    controls::ControlArray<controls::Label> opt{1, 2, 3, 4, 5, 6};  // their normal colours and their actions
    controls::Label Label1;                                         // "Options:"
    controls::Label Label3;                                         // the current file
    controls::Label Label8;                                         // the program's name on the star field
    controls::ControlArray<controls::Label> Label15{0, 1};          // the two lines under the program's name
    controls::Picture Picture5;                                     // progress bar of a long run
    controls::Picture Picture6;                                     // its filled part: `left` is the progress
    controls::Label doing;                                          // current step of the run
    controls::Button stop;                                          // stop it
    bool stop_wanted = false;                                       // the button was pressed
    controls::Choice Option1;                                       // takes the focus; never shown
    controls::Timer Timer2;                                         // moves the stars
    StarField stars;                                                // the moving stars
    controls::Timer Timer22;                                        // does nothing

    // The results panel.
    controls::Picture Picture2;         // results panel
    controls::ListBox List3;            // files found so far
    std::vector<ResultRecord> Results;  // of the rows of List3; a row without one: current directory, nothing known
    unsigned runs = 0;                  // runs with results so far
    controls::Label run_title;          // the latest message and how its run went
    controls::Label run_folder;         // the directory of its files
    controls::Button open_folder;       // show that directory
    controls::Button decode_another;    // choose another file
    controls::Label Label7;             // explains a double click
    controls::Button Command5;          // rename the selected file
    controls::Button Command7;          // erase the selected file
    controls::Button Command8;          // check the selected file for viruses
    controls::Button pictures;          // show the pictures among the files
    controls::Button Command6;          // help on misnamed files
    controls::Button Command4;          // end the program

    // The create wizard.
    controls::Picture Picture4;                                    // wizard panel
    controls::Frame Frame1;                                        // first step: what to create
    controls::Frame Frame2;                                        // second step: of which kind
    controls::ControlArray<controls::Choice> Opti{1, 2, 5, 3, 4};  // what to create
    controls::ControlArray<controls::Choice> Option2{0, 1, 2, 4};  // of which kind
    controls::Choice Option4;                                      // leave the second step
    controls::Label Label2;                                        // what is being created
    controls::Label Label4;                                        // current step
    controls::Label Label5;                                        // the wizard's directory
    controls::Label Label12;                                       // number of files it will use
    controls::Label Label6;                                        // "Name of file:"
    controls::TextBox Text2;                                       // name of the new file
    controls::Label Label9;                                        // "Password?"
    controls::TextBox Text3;                                       // its password
    controls::CheckBox old_protection;                             // protect it as old programs know
    controls::Label Label10;                                       // what a password means
    controls::Label Label11;                                       // that none is needed
    controls::CheckBox Check1;                                     // keep the paths of the files
    controls::Button Command3;                                     // choose more files
    controls::Button Command1;                                     // next step
    controls::Button back;                                         // previous step
    controls::Button Command2;                                     // leave the wizard
    controls::Button open_made;                                    // open the new file
    controls::Button show_made;                                    // show its directory
    controls::DriveListBox Drive1;                                 // drive of the wizard
    controls::DirListBox Dir1;                                     // directory of the wizard
    controls::ListBox List1;                                       // names between two steps of a run

    // Never shown.
    controls::FileListBox File2;  // the input's directory before a run
    controls::FileListBox File3;  // the same directory after it
    controls::ListBox List2;      // scratch
    controls::ListBox List4;      // scratch
    controls::TextBox Text1;      // the target directory for unpacking an archive

    // Menus.
    controls::MenuItem fifi;      // menu File
    controls::MenuItem ope;       // open an encoded or compressed file
    controls::MenuItem another;   // open a file other than the current one
    controls::MenuItem mpics;     // open pictures in the viewer
    controls::MenuItem ofpl;      // open a favorites list in the viewer
    controls::MenuItem crzip;     // create a file
    controls::MenuItem exi;       // close the main window
    controls::MenuItem tutu;      // menu Tutorial
    controls::MenuItem intro;     // what the program does
    controls::MenuItem huse;      // how to use it
    controls::MenuItem xpmen;     // menu of the theme sizing
    controls::MenuItem xpth;      // theme sizing
    controls::MenuItem hel;       // menu About
    controls::MenuItem rdhlp;     // the user guide
    controls::MenuItem mkzipdef;  // be the default program for ZIP files
    controls::MenuItem reged;     // default settings for other files
    controls::MenuItem abzip;     // about the program

    /// Makes a fresh window: idle panel shown, all else hidden, constant captions set.
    swit();
};

/// Gives the first two options their captions for the time while no file is selected.
void show_idle_captions(swit& window);

/// Gives the whole window the captions and the visible controls of a start without a file.
void set_idle_texts(swit& window);

/// Names the file `name` in the first three options: decode, scan and list it.
void show_file_captions(swit& window, const std::string& name);

/// Resets all options to their normal colour.
void fremy(swit& window);

/// The steps of the create wizard that look different.
enum class CreateStep : std::uint8_t { directory, name, files, compressing, done };

/// Shows the controls of a step and hides those of the others.
void show_create_step(swit& window, CreateStep step);

/// Leaves the create wizard: its panel and frames hidden, the stars moving.
void hide_create_panels(swit& window);

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(swit& w, F&& f) {
    f("Picture1", "Start panel", w.Picture1);
    w.apt.for_each([&](int i, controls::Label& label) { f(controls::member_name("apt", i), "Option", label); });
    w.opt.for_each([&](int i, controls::Label& label) {
        f(controls::member_name("opt", i), "Option behind the one shown", label);
    });
    f("Label1", "Heading of the options", w.Label1);
    f("Label3", "File in hand", w.Label3);
    f("Label8", "Name of the program", w.Label8);
    w.Label15.for_each([&](int i, controls::Label& label) {
        f(controls::member_name("Label15", i), "What the program is for", label);
    });
    f("Picture5", "Progress", w.Picture5);
    f("Picture6", "Progress made", w.Picture6);
    f("doing", "What is being done", w.doing);
    f("stop", "Stop what is being done", w.stop);
    f("Option1", "Takes the focus from the options", w.Option1);
    f("Timer2", "Moves the stars", w.Timer2);
    f("Timer22", "Idle timer", w.Timer22);

    f("Picture2", "Results panel", w.Picture2);
    f("List3", "Files found so far", w.List3);
    f("run_title", "How the latest run went", w.run_title);
    f("run_folder", "Folder of the files", w.run_folder);
    f("open_folder", "Open the folder of the files", w.open_folder);
    f("decode_another", "Decode another file", w.decode_another);
    f("Label7", "What can be done with the files", w.Label7);
    f("Command5", "Rename the selected file", w.Command5);
    f("Command7", "Erase the selected file", w.Command7);
    f("Command8", "Check the selected file for viruses", w.Command8);
    f("pictures", "Show all pictures", w.pictures);
    f("Command6", "Help on misnamed files", w.Command6);
    f("Command4", "End the program", w.Command4);

    f("Picture4", "Create panel", w.Picture4);
    f("Frame1", "What to create", w.Frame1);
    f("Frame2", "Which kind to create", w.Frame2);
    w.Opti.for_each(
        [&](int i, controls::Choice& choice) { f(controls::member_name("Opti", i), "What to create", choice); });
    w.Option2.for_each([&](int i, controls::Choice& choice) {
        f(controls::member_name("Option2", i), "Which kind to create", choice);
    });
    f("Option4", "Leave the choice of kinds", w.Option4);
    f("Label2", "What is being created", w.Label2);
    f("Label4", "Step of the creation", w.Label4);
    f("Label5", "Directory of the new file", w.Label5);
    f("Label12", "Number of files chosen", w.Label12);
    f("Label6", "Heading of the name", w.Label6);
    f("Text2", "Name of the new file", w.Text2);
    f("Label9", "Heading of the password", w.Label9);
    f("Text3", "Password of the new file", w.Text3);
    f("old_protection", "Protect it as old programs know", w.old_protection);
    f("Label10", "What a password means", w.Label10);
    f("Label11", "Whether a password is needed", w.Label11);
    f("Check1", "Store directories with the names", w.Check1);
    f("Command3", "Choose more files", w.Command3);
    f("Command1", "Next step", w.Command1);
    f("back", "Step before", w.back);
    f("Command2", "Leave the wizard", w.Command2);
    f("open_made", "Open the new file", w.open_made);
    f("show_made", "Show the directory of the new file", w.show_made);
    f("Drive1", "Drive of the new file", w.Drive1);
    f("Dir1", "Directory to create in", w.Dir1);
    f("List1", "Names at hand", w.List1);

    f("File2", "Files before the run", w.File2);
    f("File3", "Files after the run", w.File3);
    f("List2", "Scratch list", w.List2);
    f("List4", "Second scratch list", w.List4);
    f("Text1", "Directory that archives are unpacked into", w.Text1);

    f("fifi", "File menu", w.fifi);
    f("ope", "Open a file", w.ope);
    f("another", "Open another file", w.another);
    f("mpics", "Open pictures in the viewer", w.mpics);
    f("ofpl", "Open a favorites list in the viewer", w.ofpl);
    f("crzip", "Create a file", w.crzip);
    f("exi", "Exit", w.exi);
    f("tutu", "Tutorial menu", w.tutu);
    f("intro", "Introduction", w.intro);
    f("huse", "How to use the program", w.huse);
    f("xpmen", "Theme menu", w.xpmen);
    f("xpth", "Theme sizing", w.xpth);
    f("hel", "About menu", w.hel);
    f("rdhlp", "User guide", w.rdhlp);
    f("mkzipdef", "Default program for ZIP files", w.mkzipdef);
    f("reged", "Default settings for other files", w.reged);
    f("abzip", "About the program", w.abzip);
}

}  // namespace quill::shell
