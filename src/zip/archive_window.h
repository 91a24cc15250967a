#pragma once

#include "controls/control.h"
#include "files/file_stamp.h"
#include "files/mapped_file.h"
#include "integration/file_icons.h"
#include "shell/session.h"
#include "zip/new_zip.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quill::zip {

/// A picture that shows the icon of a file's type.
struct IconPicture : controls::Picture {
    integration::FileIcon icon;
    controls::Action click;
};

/// A picture of the toolbar: a press sinks it, the release raises it, and a click is both.
struct ToolPicture : controls::Button {
    controls::Action press;
    controls::Action release;
    controls::Action hover;
};

/// The archive as it was before a change, and the files of its members.
struct ArchiveState {
    files::MappedFile bytes;
    WorkCopies copies;
    std::string change;  ///< the change after it: "removal of letter.txt"
};

/// The archive window: an open ZIP file, whose members are files in WorkDir. Every change goes into the archive at
/// once. Its operations are in archive_loading.h, archive_rows.h, archive_actions.h, archive_document.h,
/// archive_reading.h, archive_saving.h, foreign_changes.h, archive_panel.h, archive_names.h, archive_moving.h and
/// archive_leaving.h.
struct arcview : controls::Window {
    // The list.
    controls::Picture Picture1;                                                  // panel of the list
    controls::ListBox List1;                                                     // all rows; row n is member n
    controls::ListBox List7;                                                     // the page: at most ten rows
    controls::ScrollBar VScroll2;                                                // first row of the page
    std::size_t ListTop = 0;                                                     // the page's first row in List1
    controls::ControlArray<IconPicture> Image10{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};  // icons beside the page's rows
    IconPicture Picture9;       // icon of the selected program; opens it
    controls::Button Command1;  // takes the focus; never shown

    // The facts about the archive.
    controls::Label Label23;            // number of rows
    controls::Label Label18;            // size of the archive
    controls::Label Label20;            // size of all members
    controls::Label Label21;            // its path, in lower case; a click plays or pauses the media device
    controls::Label Label2;             // its directory
    controls::Label Label4;             // its name
    controls::Label Label24;            // "Files"
    controls::Label Label13;            // action of the picture under the pointer
    controls::Label Label3;             // "1"
    controls::Label progress;           // progress of an extraction; never shown
    controls::TextBox IDC_ENCRYPTCODE;  // another password for saving; never shown

    controls::Label row_state;  // what is wrong with the selected member, and why

    // A long run in this window.
    controls::Label doing;       // current step
    controls::Picture bar;       // its progress bar
    controls::Picture bar_done;  // the filled part: `left` is the progress
    controls::Button stop;       // stop it
    bool stop_wanted = false;    // the button was pressed

    // The toolbar.
    controls::ControlArray<ToolPicture> Image1{1, 2, 3, 4};        // open, move, repack, exit
    controls::ControlArray<controls::Picture> Image2{1, 2, 3, 4};  // the same, sunken

    // The panel that moves or extracts files to a directory.
    controls::Picture Picture2;       // the panel
    controls::Label panel_title;      // its action
    controls::DriveListBox Drive1;    // drive to go to
    controls::DirListBox Dir1;        // directory to go to
    controls::Label Label5;           // its path
    controls::Choice take_all;        // move or extract all files
    controls::Choice take_selected;   // those of the selected members
    controls::CheckBox own_folder;    // put them into a new directory there
    controls::CheckBox opens_folder;  // open the directory afterwards
    controls::Button Command2;        // move or extract the files there
    controls::Button Command3;        // make a directory there
    controls::Button Command4;        // leave the panel
    bool panel_extracts = false;      // the panel extracts members; else it moves their files

    // Menus.
    controls::MenuItem fil;                                                       // menu File
    controls::MenuItem pictures;                                                  // show the pictures among the members
    controls::MenuItem peo;                                                       // open the member
    controls::MenuItem extract;                                                   // extract members to a directory
    controls::MenuItem test;                                                      // test all members
    controls::MenuItem rpnex;                                                     // repack and exit
    controls::MenuItem exnrp;                                                     // exit without repacking
    controls::MenuItem edi;                                                       // menu Edit
    controls::MenuItem undo;                                                      // undo the last change
    controls::MenuItem adtozip;                                                   // add files
    controls::MenuItem remzip;                                                    // remove the selected members
    controls::MenuItem savzipch;                                                  // save changed files into the archive
    controls::MenuItem lock;                                                      // password for added files
    controls::MenuItem nam;                                                       // menu Names
    controls::ControlArray<controls::MenuItem> names_in{0, 1, 2, 3, 4, 5, 6, 7};  // automatic, and the character sets
    controls::MenuItem hlp;                                                       // menu Help
    controls::MenuItem help;                                                      // user guide
    controls::MenuItem abt;                                                       // about the program
    controls::MenuItem dvd;                                                       // menu of a row
    controls::MenuItem opt;                                                       // open the member
    controls::MenuItem exs;                                                       // extract the selected members
    controls::MenuItem mvs;                                                       // move the selected members' files
    controls::MenuItem ads;                                                       // add files
    controls::MenuItem rrm;                                                       // remove the selected members
    controls::MenuItem lod;                                                       // "Load file into .."
    controls::MenuItem lodnone;                                                   // its empty item

    controls::Timer watch;  // checks whether other programs have changed the files

    std::string MediaAlias;                       // the media device; nothing opens one
    std::string MediaReply;                       // its last reply, or the text of its error
    std::string ArchivePath;                      // full path of the archive
    std::shared_ptr<const OpenedArchive> listed;  // the archive as the rows show it; nullptr for a new one
    std::optional<files::MappedFile> bytes;       // its bytes, which stay when another program replaces it
    std::optional<files::FileStamp> stamp;        // its file as the rows show it
    std::optional<std::uint32_t> crc;             // of its bytes; nullopt where they are too many to be read again
    std::map<std::size_t, MemberResult> tested;   // what the last test has found of each row
    std::vector<ArchiveState> undo_states;        // before each change, the last one at the end
    std::set<std::size_t> changed_rows;           // rows whose files other programs have changed
    /// The archive's file when the user was last asked about it: an inner nullopt if it was gone.
    std::optional<std::optional<files::FileStamp>> asked_about;
    std::uint64_t shown_revision = 0;           // counts changes of the facts about the rows
    std::vector<std::string> made_directories;  // directories in WorkDir made by unpacking, outer ones first
    bool work_dir_is_private = false;           // WorkDir was made for only this window

    arcview(shell::Context& shared, NewZIP& operations);

    shell::Context& context;
    NewZIP& archives;

    /// Returns the controls that the archive operations read and fill.
    ArchiveView view() { return {List1, Label18, Label20, Label21, progress}; }
};

/// Pauses the window's checks for changes by other programs while it lives: a question is open, or files are being
/// written.
class Unwatched {
  public:
    explicit Unwatched(arcview& w) : w_(w), before_(w.watch.enabled) { w.watch.enabled = false; }
    ~Unwatched() { w_.watch.enabled = before_; }
    Unwatched(const Unwatched&) = delete;
    Unwatched& operator=(const Unwatched&) = delete;

  private:
    arcview& w_;
    bool before_;
};

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(arcview& w, F&& f) {
    f("Picture1", "Members of the archive", w.Picture1);
    f("List1", "Members", w.List1);
    f("List7", "Page of members", w.List7);
    f("VScroll2", "Beginning of the page", w.VScroll2);
    w.Image10.for_each(
        [&](int i, IconPicture& icon) { f(controls::member_name("Image10", i), "Type of the member", icon); });
    f("Picture9", "Open the selected program", w.Picture9);
    f("Command1", "Takes the focus from the page", w.Command1);

    f("Label23", "Number of members", w.Label23);
    f("Label18", "Size of the archive", w.Label18);
    f("Label20", "Size of all members", w.Label20);
    f("Label21", "Path of the archive", w.Label21);
    f("Label2", "Directory of the archive", w.Label2);
    f("Label4", "Name of the archive", w.Label4);
    f("Label24", "What the list shows", w.Label24);
    f("Label13", "What the button does", w.Label13);
    f("Label3", "Number of the window", w.Label3);
    f("progress", "Progress of the extraction", w.progress);
    f("row_state", "State of the selected member", w.row_state);
    f("doing", "What is being done", w.doing);
    f("bar", "Progress", w.bar);
    f("bar_done", "Progress made", w.bar_done);
    f("stop", "Stop what is being done", w.stop);
    f("IDC_ENCRYPTCODE", "Password for saved files", w.IDC_ENCRYPTCODE);

    w.Image1.for_each([&](int i, ToolPicture& tool) { f(controls::member_name("Image1", i), "Tool", tool); });
    w.Image2.for_each(
        [&](int i, controls::Picture& tool) { f(controls::member_name("Image2", i), "Pressed tool", tool); });

    f("Picture2", "Panel of the directory to move or extract to", w.Picture2);
    f("panel_title", "What the panel does", w.panel_title);
    f("Drive1", "Drive to go to", w.Drive1);
    f("Dir1", "Directory to go to", w.Dir1);
    f("Label5", "Path to go to", w.Label5);
    f("take_all", "Move or extract all files", w.take_all);
    f("take_selected", "Move or extract the selected files", w.take_selected);
    f("own_folder", "Extract into a new directory", w.own_folder);
    f("opens_folder", "Open the directory afterwards", w.opens_folder);
    f("Command2", "Move or extract the files there", w.Command2);
    f("Command3", "Make a directory", w.Command3);
    f("Command4", "Leave the panel", w.Command4);

    f("fil", "File menu", w.fil);
    f("pictures", "Show all pictures", w.pictures);
    f("peo", "Open the member", w.peo);
    f("extract", "Extract members", w.extract);
    f("test", "Test the archive", w.test);
    f("rpnex", "Repack and exit", w.rpnex);
    f("exnrp", "Exit without repacking", w.exnrp);
    f("edi", "Edit menu", w.edi);
    f("undo", "Take the last change back", w.undo);
    f("adtozip", "Add files", w.adtozip);
    f("remzip", "Remove the selected members", w.remzip);
    f("savzipch", "Save changes into the archive", w.savzipch);
    f("lock", "Password for added files", w.lock);
    f("nam", "Names menu", w.nam);
    w.names_in.for_each([&](int i, controls::MenuItem& item) {
        f(controls::member_name("names_in", i), "Character set of the names", item);
    });
    f("hlp", "Help menu", w.hlp);
    f("help", "User guide", w.help);
    f("abt", "About the program", w.abt);
    f("dvd", "Menu of a member", w.dvd);
    f("opt", "Open the member from its menu", w.opt);
    f("exs", "Extract the selected members from their menu", w.exs);
    f("mvs", "Move the selected members' files from their menu", w.mvs);
    f("ads", "Add files from the member's menu", w.ads);
    f("rrm", "Remove the members from their menu", w.rrm);
    f("lod", "Load the file into a program", w.lod);
    f("lodnone", "No program", w.lodnone);
    f("watch", "Looks for changed files", w.watch);
}

/// Fills the route that opens archives in this window. Both arguments must outlive the route's last call.
void provide_archive_window(shell::Context& context, NewZIP& archives);

}  // namespace quill::zip
