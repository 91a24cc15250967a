#pragma once

#include "controls/control.h"
#include "shell/session.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace quill::encoder {

/// What the chooser does with a selected file. Its caption is the mode.
enum class ChooserMode : std::uint8_t {
    open_archive,    ///< "Select a ZIP or HTX file to open or view"
    open,            ///< "Select a file to open, view or decode"
    decode,          ///< "Select a file to decode"
    add_to_archive,  ///< "Add files to zip"
    anti_virus,      ///< "Select the anti-virus program you wish to use"
    collect_files,   ///< "Select files to copy into a new ZIP file"
    collect_pages,   ///< "Select .htm or .html files to copy into a new HTX file"
    encode_uue,      ///< "Create a UUE encoded file"
    encode_mime,     ///< "Create a MIME encoded file"
    encode_binhex,   ///< "Create a BIN-HEX 4 file"
    encode_xxe,      ///< "Create an XXEncoded file"
    encode_yenc      ///< "Create a yEncoded file"
};

std::string_view caption_of(ChooserMode mode);
/// Returns the pattern of names that the mode lists at first.
std::string_view pattern_of(ChooserMode mode);
constexpr bool opens(ChooserMode mode) {
    return mode <= ChooserMode::decode;
}
constexpr bool collects(ChooserMode mode) {
    return mode == ChooserMode::collect_files || mode == ChooserMode::collect_pages;
}
constexpr bool encodes(ChooserMode mode) {
    return mode >= ChooserMode::encode_uue;
}

/// Calls from the chooser to windows in higher layers.
struct ChooserRoutes {
    controls::Action add_chosen_files;                        ///< add the selection to the open archive
    controls::Action show_archive_rows;                       ///< redraw the archive's rows
    std::function<void(const std::string& path)> hunt_links;  ///< a page was collected: find the files that it links to
};

/// A picture of tabs: the position of a press decides what it does, in twips from its left.
struct TabPicture : controls::Picture {
    std::function<void(int x)> press;
};

/// The program's only file-picking window.
struct cmdg : controls::Window {
    // The file page.
    controls::TextBox Text1;          // the directory; can be edited, Enter goes there
    controls::Button go;              // go to the typed directory
    controls::DriveListBox Drive1;    // drive
    controls::DirListBox Dir1;        // directory
    controls::FileListBox File1;      // its files
    controls::CheckBox hidden_files;  // list hidden files as well
    controls::ListBox List1;          // names in File1, row for row; never shown
    controls::Button Command1;        // do the mode's work on the selected files
    controls::Button Command2;        // leave
    controls::ListBox List2;          // files chosen so far
    controls::Label Label1;           // heading of List2
    controls::ListBox List3;          // valid images of the last page
    controls::ListBox List4;          // valid pages of it
    controls::Button Command3;        // add the valid images
    controls::Button Command4;        // add the valid pages
    controls::Button Command5;        // hunt all links
    controls::Button Command6;        // help on the links
    controls::Label doing;            // current step of a hunt
    controls::Picture bar;            // its progress bar
    controls::Picture bar_done;       // the filled part: `left` is the progress
    controls::Button stop;            // stop it
    bool stop_wanted = false;         // the button was pressed
    controls::Choice Option1;         // list only HTML files
    controls::Choice Option2;         // list all files

    // The favorites beside the file list.
    controls::Picture Picture1;  // favorites panel
    controls::Label Label2;      // its heading
    controls::ListBox List5;     // captions of the favorites
    controls::ListBox List6;     // their directories, row for row; never shown
    controls::Label Label3;      // add a favorite

    // The page behind the tabs.
    TabPicture Image1;           // tabs above the file list
    controls::Picture Picture2;  // page that covers the window
    controls::Button Image2;     // closes the page
    controls::ListBox List9;     // recent directories; work list of the yEnc merge
    controls::Label Label5;      // what a click on them does
    controls::Choice Option3;    // clear the recent directories
    controls::Button Command11;  // leave the window

    // The merge page, inside that page.
    controls::Picture Picture3;     // merge page
    controls::DriveListBox Drive2;  // its drive
    controls::DirListBox Dir2;      // its directory
    controls::FileListBox File2;    // its files
    controls::Label Label6;         // heading of List7
    controls::ListBox List7;        // files to merge
    controls::ListBox List8;        // part numbers, in the order of List7; never shown
    controls::Button Command7;      // add the selected files
    controls::Button Command9;      // merge text encodings
    controls::Button Command10;     // merge yEnc parts
    controls::Button Command8;      // clear the list of files to merge
    controls::Button Command12;     // explain the merge
    controls::Button Command13;     // back to the main window

    std::string chosenDir;    ///< path of Dir1 with a slash at its end
    std::string scan_target;  ///< the file for the anti-virus program to check; empty for SelectedDir/SelectedFile
    ChooserRoutes routes;

    explicit cmdg(shell::Context& context);

    ChooserMode mode() const;

  private:
    shell::Context context_;
};

/// Shows the chooser in `mode`, starting in `directory`, or in the process's current one if that does not exist.
cmdg& show_chooser(shell::Context& context, ChooserMode mode, const std::string& directory);

/// Makes `directory` the chooser's current one, on its file page and on its merge page. Entering another directory
/// clears the selection.
void enter_directory(cmdg& chooser, const std::string& directory);

/// Makes `directory` the current one of only the merge page. The files to merge are all in one directory, so entering
/// another one clears their list.
void enter_parts_directory(cmdg& chooser, const std::string& directory);

/// Refills the favorites lists from the favorites directory.
void showlnks(shell::Context& context, cmdg& chooser);

template <class F>
void visit_controls(cmdg& w, F&& f) {
    f("Text1", "Directory to go to", w.Text1);
    f("go", "Go to the directory typed", w.go);
    f("Drive1", "Drive", w.Drive1);
    f("Dir1", "Directory", w.Dir1);
    f("File1", "Files in the directory", w.File1);
    f("hidden_files", "List hidden files as well", w.hidden_files);
    f("List1", "Names of the files", w.List1);
    f("Command1", "Select", w.Command1);
    f("Command2", "Leave the window", w.Command2);
    f("Label1", "Heading of the files chosen", w.Label1);
    f("List2", "Files chosen thus far", w.List2);
    f("List3", "Valid images found", w.List3);
    f("List4", "Valid pages found", w.List4);
    f("Command3", "Add the valid images", w.Command3);
    f("Command4", "Add the valid pages", w.Command4);
    f("Command5", "Hunt all links", w.Command5);
    f("Command6", "Help on the links", w.Command6);
    f("doing", "What the hunt is doing", w.doing);
    f("bar", "Progress", w.bar);
    f("bar_done", "Progress made", w.bar_done);
    f("stop", "Stop the hunt", w.stop);
    f("Option1", "List only HTML files", w.Option1);
    f("Option2", "List all files", w.Option2);

    f("Picture1", "Favorites panel", w.Picture1);
    f("Label2", "Heading of the favorites", w.Label2);
    f("List5", "Favorite directories", w.List5);
    f("List6", "Paths of the favorite directories", w.List6);
    f("Label3", "Add a favorite directory", w.Label3);

    f("Image1", "Tabs", w.Image1);
    f("Picture2", "Page behind the tabs", w.Picture2);
    f("Image2", "Back to the files", w.Image2);
    f("List9", "Recent directories", w.List9);
    f("Label5", "What a click on a recent directory does", w.Label5);
    f("Option3", "Clear the recent directories", w.Option3);
    f("Command11", "Leave the page and the window", w.Command11);

    f("Picture3", "Merge page", w.Picture3);
    f("Drive2", "Drive of the parts", w.Drive2);
    f("Dir2", "Directory of the parts", w.Dir2);
    f("File2", "Files that can be merged", w.File2);
    f("Label6", "Heading of the files to merge", w.Label6);
    f("List7", "Files to merge, in order", w.List7);
    f("List8", "Part numbers", w.List8);
    f("Command7", "Add the selected files", w.Command7);
    f("Command9", "Merge UUE or MIME parts", w.Command9);
    f("Command10", "Merge yEnc parts", w.Command10);
    f("Command8", "Clear the files to merge", w.Command8);
    f("Command12", "Help on merging", w.Command12);
    f("Command13", "Back to the main window", w.Command13);
}

}  // namespace quill::encoder
