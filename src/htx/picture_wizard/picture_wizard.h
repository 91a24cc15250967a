#pragma once

#include "controls/control.h"
#include "htx/picture_book/picture_book.h"
#include "platform/pictures.h"
#include "shell/session.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quill::htx {

enum class WizardStep : std::uint8_t { welcome, pictures, letters, titles, order, saving };

/// The picture wizard: makes a picture book, or in its other mode, named by its caption, an album.
struct HtxWiz : controls::Window {
    controls::Label Label1;          // welcome
    controls::Label Label2;          // purpose of this window
    controls::Button Command1;       // leave the welcome
    controls::Label Label4;          // heading of the step
    controls::Button Command7;       // back
    controls::Button Command4;       // next; finish
    controls::Button Command5;       // cancel
    controls::Picture Image1;        // the picture of the current step
    controls::DriveListBox Drive1;   // drive
    controls::DirListBox Dir1;       // directory of the pictures; later of the new file
    controls::FileListBox File1;     // pictures in it; later books or albums
    controls::CheckBox other_kinds;  // list newer kinds of pictures too
    controls::Button add;            // add the selected ones
    controls::Button add_all;        // add all
    controls::Button reset;          // empty the list
    controls::ListBox List1;         // paths of the chosen pictures
    controls::ListBox List2;         // their names, row for row
    controls::Label chosen_count;    // number of pictures

    controls::TextBox Text1;         // sample of the letters
    controls::Label Label12;         // their size
    controls::Button larger;         // letters
    controls::Button smaller;        // letters
    controls::Button bold;           // turn on, off
    controls::Button italic;         // turn on, off
    controls::Button background;     // choose the colour
    controls::Button foreground;     // choose the colour
    controls::Button reset_letters;  // restore the defaults

    controls::Label Label6;                                  // "Picture 1 of 100"
    controls::Label Label8;                                  // index of that picture; never shown
    controls::Label title_heading;                           // over the title
    controls::TextBox Text2;                                 // its title
    controls::Label caption_heading;                         // over the caption
    controls::TextBox Text3;                                 // its caption
    controls::ControlArray<controls::Choice> Option1{0, 1};  // caption above, below
    controls::Button next_picture;                           // store the texts, go to the next one
    controls::Button why_titles;                             // explain
    controls::Button why_small;                              // explain
    controls::ListBox List6;  // place of the caption and title, for each picture; never shown

    controls::Label original_order;     // over List3
    controls::ListBox List3;            // names in the chosen order
    controls::Label new_order;          // over List4
    controls::ListBox List4;            // names in page order
    controls::ListBox List5;            // the places in List3 of the names in List4; never shown
    controls::Button put;               // put the selected ones at the end of the new order
    controls::Button clear_order;       // empty the new order
    controls::Button how_to_order;      // explain
    controls::CheckBox Check1;          // an album with thumbnails
    controls::Button about_thumbnails;  // explain

    controls::Label Label11;                                 // over the name
    controls::TextBox Text5;                                 // name of the new file
    controls::Label directory_heading;                       // over the directory
    controls::TextBox Text6;                                 // directory of the new file
    controls::Label password_heading;                        // over the password
    controls::TextBox Text4;                                 // password
    controls::ControlArray<controls::Choice> Option2{0, 1};  // only the book, or pages and pictures too
    controls::CheckBox index_page;                           // begin with a page of all pictures
    controls::Label doing;                                   // current step
    controls::Picture bar;                                   // progress bar
    controls::Picture bar_done;                              // the filled part
    controls::Button stop;                                   // stop it

    explicit HtxWiz(shell::Context& shared);
    ~HtxWiz() override;

    bool makes_album() const { return caption.starts_with("PICS"); }

    /// Adds files dropped on the list, and the pictures in directories.
    void add_files(const std::vector<std::string>& paths);
    /// Handles names of List3 dropped on List4.
    void put_in_order(const std::vector<std::size_t>& rows);
    /// Handles a name of List4 dropped at another place in it.
    void move_in_order(std::size_t from, std::size_t to);

    shell::Context context;
    WizardStep step = WizardStep::welcome;
    PageStyle style;                           ///< of the letters in Text1
    std::string shown_picture;                 ///< path; empty for none
    std::vector<std::string> captions;         ///< row for row with List6
    std::map<std::string, BookPicture> words;  ///< typed texts for each path, for a user who goes back
    bool stop_wanted = false;

    /// The thumbnails of a new album, in the order of its pictures.
    struct Thumbnails {
        std::vector<std::string> made;
        std::vector<std::string> without;       ///< paths of pictures that can't be decoded
        platform::Pictures::Ticket ticket = 0;  ///< of the waiting request; 0 for none
    } thumbnails;
};

/// Shows the wizard's welcome page, with these pictures chosen. `caption` names the mode.
void show_picture_wizard(shell::Context& context, const std::string& caption, const std::vector<std::string>& pictures);

constexpr auto book_caption = "HTX  Picture Book / Photo Album Maker";
constexpr auto album_caption = "PICS Multiple Picture File Maker";

/// Fills the routes to the wizard. `context` must outlive its windows.
void provide_picture_wizard(shell::Context& context);

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(HtxWiz& w, F&& f) {
    const auto each = [&](const char* name, const char* role, auto& array) {
        array.for_each([&](int i, auto& control) { f(controls::member_name(name, i), role, control); });
    };
    f("Label1", "Welcome", w.Label1);
    f("Label2", "What is made here", w.Label2);
    f("Command1", "Begin", w.Command1);
    f("Label4", "Step", w.Label4);
    f("Command7", "Back", w.Command7);
    f("Command4", "Next", w.Command4);
    f("Command5", "Cancel", w.Command5);
    f("Image1", "Picture", w.Image1);
    f("Drive1", "Drive", w.Drive1);
    f("Dir1", "Directory", w.Dir1);
    f("File1", "Files in the directory", w.File1);
    f("other_kinds", "List other kinds of pictures", w.other_kinds);
    f("add", "Add the selected files", w.add);
    f("add_all", "Add all files", w.add_all);
    f("reset", "Empty the list of pictures", w.reset);
    f("List1", "Pictures chosen", w.List1);
    f("List2", "Names of the pictures", w.List2);
    f("chosen_count", "Number of pictures", w.chosen_count);
    f("Text1", "Sample of the letters", w.Text1);
    f("Label12", "Size of the letters", w.Label12);
    f("larger", "Larger letters", w.larger);
    f("smaller", "Smaller letters", w.smaller);
    f("bold", "Bold letters", w.bold);
    f("italic", "Italic letters", w.italic);
    f("background", "Background color", w.background);
    f("foreground", "Font color", w.foreground);
    f("reset_letters", "First letters and colors", w.reset_letters);
    f("Label6", "Number of the picture", w.Label6);
    f("Label8", "Index of the picture", w.Label8);
    f("title_heading", "Title", w.title_heading);
    f("Text2", "Title of the page", w.Text2);
    f("caption_heading", "Caption", w.caption_heading);
    f("Text3", "Caption of the picture", w.Text3);
    each("Option1", "Place of the caption", w.Option1);
    f("next_picture", "Next picture", w.next_picture);
    f("why_titles", "Why titles", w.why_titles);
    f("why_small", "Why the picture is small", w.why_small);
    f("List6", "Titles of the pictures", w.List6);
    f("original_order", "Original order", w.original_order);
    f("List3", "Pictures in the original order", w.List3);
    f("new_order", "New order", w.new_order);
    f("List4", "Pictures in the new order", w.List4);
    f("List5", "Places in the original order", w.List5);
    f("put", "Put into the new order", w.put);
    f("clear_order", "Clear the new order", w.clear_order);
    f("how_to_order", "How to change the order", w.how_to_order);
    f("Check1", "Separate thumbnails", w.Check1);
    f("about_thumbnails", "About separate thumbnails", w.about_thumbnails);
    f("Label11", "Name", w.Label11);
    f("Text5", "Name of the new file", w.Text5);
    f("directory_heading", "Directory", w.directory_heading);
    f("Text6", "Directory of the new file", w.Text6);
    f("password_heading", "Password", w.password_heading);
    f("Text4", "Password of the book", w.Text4);
    each("Option2", "What to create", w.Option2);
    f("index_page", "Index page", w.index_page);
    f("doing", "What is being done", w.doing);
    f("bar", "Progress", w.bar);
    f("bar_done", "Progress made", w.bar_done);
    f("stop", "Stop", w.stop);
}

}  // namespace quill::htx
