#pragma once

#include "controls/control.h"
#include "htx/book/book_geometry.h"
#include "htx/book/book_memory.h"
#include "htx/book/book_pages.h"
#include "platform/browser.h"
#include "shell/session.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quill::htx {

/// A line of a page that contains the search text.
struct BookHit {
    std::size_t page = 0;
    std::string line;
    std::size_t place = 0;  ///< number of its first occurrence among those on the page
};

/// The reader: shows a book page by page. In its other mode, without files, the user sizes the window of a new book.
struct Form7 : controls::Window {
    controls::Picture WebBrowser1;                                     // the page
    controls::ListBox List1;                                           // files of the book, sorted; never shown
    controls::ListBox List2;                                           // pages, sorted; never shown
    controls::Label Label1;                                            // path of the first page; never shown
    controls::Label Label2;                                            // "Page 1 of 12"
    controls::Label Label3;                                            // index of the current page; never shown
    controls::ControlArray<controls::Button> Command3{0, 1, 2, 3, 4};  // back, first, previous, next, last
    controls::Button Command4;                                         // contents
    controls::Button Command1;                                         // sizing: instructions; also closes
    controls::Button Command2;                                         // sizing: close

    // The contents screen.
    controls::Frame Frame2;     // covers the window
    controls::Frame Frame1;     // "Contents"
    controls::ListBox List3;    // titles, in page order
    controls::ListBox List4;    // names of the pages
    controls::Label Label4;     // "Getting subject listings"
    controls::Label Label5;     // explains a click
    controls::Button Command5;  // close the screen

    // The results of a search in the book.
    controls::Frame hits_panel;   // beside the page
    controls::Label hits_found;   // number of results
    controls::ListBox hits;       // page and line of each
    controls::Button hits_close;  // close the list

    // Menus.
    controls::MenuItem fil;        // menu File
    controls::MenuItem ope;        // open another book
    controls::MenuItem prn;        // print
    controls::MenuItem exi;        // close
    controls::MenuItem edi;        // menu Edit
    controls::MenuItem cpy;        // copy the selection
    controls::MenuItem sel;        // select all
    controls::MenuItem pag;        // menu Page
    controls::MenuItem fst;        // first page
    controls::MenuItem prv;        // previous page
    controls::MenuItem nxt;        // next page
    controls::MenuItem lst;        // last page
    controls::MenuItem goto_page;  // contents
    controls::MenuItem forth;      // forward in history
    controls::MenuItem vie;        // menu View
    controls::MenuItem larger;     // larger letters
    controls::MenuItem smaller;    // smaller letters
    controls::MenuItem usual;      // letters of the usual size
    controls::MenuItem sea;        // menu Search
    controls::MenuItem fnd;        // find on the page
    controls::MenuItem fnb;        // find in the book
    controls::MenuItem again;      // next place
    controls::MenuItem earlier;    // previous place
    controls::MenuItem hlp;        // menu Help
    controls::MenuItem gui;        // user guide
    controls::MenuItem abt;        // about the program

    /// A file of the book.
    struct File {
        std::string address;  ///< path from the book's root
        std::string path;     ///< where it was unpacked
    };

    explicit Form7(shell::Context& shared);

    /// Has the book at the path `book` go on where it was left, which is remembered in the file `memory`.
    void remember_in(std::string memory, std::string book);
    /// Takes the files of a book, sorts its pages and shows the first one, or the one that
    /// it was left at.
    void show_files(std::vector<File> unpacked);
    /// Returns the path of the file for an address on a page of the book; empty if it is not in the book.
    std::string path_of(const Address& address) const;

    /// Sets the browser, or, with nullptr, removes it.
    void attach(platform::Browser* browser);
    /// Shows page number `page`.
    void go_to(std::size_t page);
    /// Handles the browser's arrival at a page.
    void navigated(const std::string& address);
    /// Handles the title of the current page.
    void titled(const std::string& title);
    /// Makes the letters larger or smaller by so many steps.
    void zoom_by(int steps);
    /// The window is to lie on one of these screens.
    void fit_to(const std::vector<ScreenArea>& screens);
    /// The user has clicked a link on the page `from`.
    void follow(const std::string& from, const std::string& address);
    /// Stores the frame's new place and size, in twips, as the book's.
    void resized();

    /// Returns the current page as its row in List2.
    std::size_t page() const;

    shell::Context& context;
    controls::Action closed;  ///< what becomes of the files when the window closes
    BookGeometry wanted;      ///< the window as the book has it, wherever that is

  private:
    void wire();
    void show_contents();
    void ask_on_page();
    void find_on_page(platform::Browser::Direction direction);
    void find_in_book();
    std::vector<BookHit> hits_on(std::size_t page) const;
    void show_hit();
    void go_on(platform::Browser::Direction direction);
    void close_window();
    void remember();
    void set_zoom(int percent);
    void navigate(const std::string& address, const std::string& fragment);

    std::vector<File> files_;
    BookFiles index_{{}};
    std::vector<std::string> pages_;  ///< addresses, row for row with List2
    platform::Browser* browser_ = nullptr;
    std::string wanted_, wanted_fragment_;
    std::string searched_;
    std::string memory_, book_;
    BookPlace left_at_;     ///< `zoom` is the current one
    bool goes_on_ = false;  ///< the place in the first page shown is still to be found
    std::vector<BookHit> found_;
};

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(Form7& w, F&& f) {
    f("WebBrowser1", "Page", w.WebBrowser1);
    f("List1", "Files of the book", w.List1);
    f("List2", "Pages of the book", w.List2);
    f("Label1", "First page", w.Label1);
    f("Label2", "Number of the page", w.Label2);
    f("Label3", "Index of the page", w.Label3);
    w.Command3.for_each(
        [&](int i, controls::Button& button) { f(controls::member_name("Command3", i), "Turn pages", button); });
    f("Command4", "Contents of the book", w.Command4);
    f("Command1", "How to size the window", w.Command1);
    f("Command2", "Close the window", w.Command2);
    f("Frame2", "Contents screen", w.Frame2);
    f("Frame1", "Contents", w.Frame1);
    f("List3", "Titles of the pages", w.List3);
    f("List4", "Names of the pages", w.List4);
    f("Label4", "Please wait", w.Label4);
    f("Label5", "What a click on a page does", w.Label5);
    f("Command5", "Close the contents", w.Command5);
    f("hits_panel", "Places found", w.hits_panel);
    f("hits_found", "Number of places found", w.hits_found);
    f("hits", "Pages and lines found", w.hits);
    f("hits_close", "Close the list", w.hits_close);
    f("fil", "File menu", w.fil);
    f("ope", "Open another book", w.ope);
    f("prn", "Print", w.prn);
    f("exi", "Close the book", w.exi);
    f("edi", "Edit menu", w.edi);
    f("cpy", "Copy what is selected", w.cpy);
    f("sel", "Select all", w.sel);
    f("pag", "Page menu", w.pag);
    f("fst", "First page", w.fst);
    f("prv", "Previous page", w.prv);
    f("nxt", "Next page", w.nxt);
    f("lst", "Last page", w.lst);
    f("goto_page", "Go to a page", w.goto_page);
    f("forth", "Forward", w.forth);
    f("vie", "View menu", w.vie);
    f("larger", "Larger letters", w.larger);
    f("smaller", "Smaller letters", w.smaller);
    f("usual", "Letters of the usual size", w.usual);
    f("sea", "Search menu", w.sea);
    f("fnd", "Find on the page", w.fnd);
    f("fnb", "Find in the book", w.fnb);
    f("again", "Next place", w.again);
    f("earlier", "Previous place", w.earlier);
    f("hlp", "Help menu", w.hlp);
    f("gui", "User guide", w.gui);
    f("abt", "About the program", w.abt);
}

/// Opens the window for sizing that of a book whose first page is at `page`, a path.
void size_book_window(shell::Context& context, const std::string& page);

}  // namespace quill::htx
