#pragma once

#include "controls/control.h"
#include "shell/session.h"
#include "viewer/thumbnails.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::viewer {

/// What a cell shows of its file, by the end of the file's name.
enum class CellKind : std::uint8_t {
    nothing,  ///< an empty cell, or a file of a kind that is not shown
    picture,  ///< the picture, scaled to the cell
    icon,     ///< the picture at its own size
    other     ///< a file of a known kind that is not a picture: the cell stays blank
};

/// Returns the kind of the file called `name`, by its last three letters.
CellKind cell_kind(std::string_view name);

enum class MouseButton : std::uint8_t { left, right };

/// One cell of the column.
struct PictureCell : controls::Picture {
    std::string item;  ///< the row of the list that it shows; empty for none
    CellKind kind = CellKind::nothing;
    bool stretch = false;  ///< the picture is scaled to the cell
};

/// One of the tabs.
struct Tab : controls::Label {
    int border = 0;  ///< 1 for the active one
    controls::Action right_press;
};

/// The column of thumbnails at the left of the frame: the pictures of directories, an album, a set, or the current
/// favorites list.
struct tittwo : controls::Window {
    controls::ControlArray<PictureCell> Image7{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};  // cells
    controls::ScrollBar VScroll1;              // the list's row in cell 0
    controls::ControlArray<Tab> Label1{0, 1};  // tabs Files and Favorites
    controls::FileListBox File1;               // lists a directory; never shown
    controls::ListBox List2;                   // chosen directories; never shown
    controls::ListBox List3;                   // pictures of the directories, or of a set
    controls::ListBox List1;                   // pictures of the album, or of the favorites list
    controls::Button Image1;                   // closes the column
    controls::Timer Timer1;                    // sends the column to the back

    controls::MenuItem fu;      // menu File
    controls::MenuItem sledir;  // other directory
    controls::MenuItem adir;    // one more directory
    controls::MenuItem rd;      // menu of recent directories
    controls::ControlArray<controls::MenuItem> lastf{0, 1,  2,  3,  4,  5,  6,  7, 8,
                                                     9, 10, 11, 12, 13, 14, 15, 16};  // its items; 15 is a line
    controls::MenuItem eksi;                                                          // close the frame
    controls::MenuItem vvuu;                                                          // menu View
    controls::ControlArray<controls::MenuItem> howf{0, 1};                            // files, favorites
    controls::MenuItem howlef;                                                        // the column is shown
    controls::MenuItem fva;                                                           // menu Favorites
    controls::ControlArray<controls::MenuItem> fvmn{1, 2, 3, 4, 5, 6, 7};             // its items; 2 and 6 are lines
    controls::MenuItem hh;                                                            // menu Help
    controls::ControlArray<controls::MenuItem> hlp{1, 3, 5};                          // its items
    controls::MenuItem ze;                                                            // menu of a right click
    controls::ControlArray<controls::MenuItem> remv{1, 2};                            // remove from the list, delete

    int cellpage = 0;                    ///< number of painted cells
    std::string selpath;                 ///< path of the last clicked thumbnail
    std::vector<std::string> set;        ///< pictures shown instead of those of directories
    bool at_back = false;                ///< it is below the picture windows
    std::optional<std::size_t> current;  ///< the row with the keyboard focus
    /// The rows that a view shows, if they are more than the page.
    struct Sight {
        std::size_t first = 0, count = 0;
    };
    std::optional<Sight> sight;
    Thumbnails thumbnails;

    /// The sources of the lists, so that they are rebuilt only after a change.
    struct Stamp {
        std::vector<std::filesystem::file_time_type> times;
        std::vector<std::string> of;

        bool operator==(const Stamp&) const = default;
    };
    Stamp built_from;

    explicit tittwo(shell::Context& shared);

    shell::Context context;
};

/// Returns the cells on a page for a screen of that height, in twips.
int cells_of_page(int screen_height);

bool shows_favorites(const tittwo& column);

/// Returns the list that feeds the cells.
const controls::ListBox& source_list(const tittwo& column);

/// The path and the title of a row of that list, to open its picture. Empty for a missing row.
struct PictureName {
    std::string path, title;
};
PictureName picture_of_row(const tittwo& column, std::size_t row);

/// Returns the column, loaded and shown.
tittwo& show_column(shell::Context& context);

/// Unloads the column, and with it closes an open album.
void unload_column(shell::Context& context);

/// Rebuilds the pictures of the chosen directories, of the open album, or of the favorites list, and paints the page.
void imgrefresh(tittwo& column);
void getps(tittwo& column);
void loadfavlist(tittwo& column);

/// Rebuilds the list that feeds the cells, and paints the page.
void refresh_column(tittwo& column);

/// Paints the page after scrolling, rebuilding lists whose sources have changed.
void scroll_column(tittwo& column);

/// Handles a view of `count` rows from `first`: decodes their thumbnails, and moves the page there.
void look_at_rows(tittwo& column, std::size_t first, std::size_t count);

/// Switches to a tab: 0 Files, 1 Favorites.
void choose_tab(tittwo& column, int tab);

/// Handles a click on a cell of the page, or on a row of the list: opens its picture, or the menu of a right click.
/// Returns true if that menu must be shown.
bool click_cell(tittwo& column, int cell, MouseButton button);
bool click_row(tittwo& column, std::size_t row, MouseButton button);

/// Asks, and moves the last clicked picture to the trash.
void delete_selected(tittwo& column);

/// Shows the pictures among `paths` in the column as one set.
void show_set(shell::Context& context, const std::vector<std::string>& paths);

/// Shows the window that opens pictures, to add a directory to those of the column.
void add_another_directory(shell::Context& context);

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(tittwo& w, F&& f) {
    using controls::member_name;
    const auto each = [&](const char* array, const char* role, auto& controls) {
        controls.for_each([&](int i, auto& control) { f(member_name(array, i), role, control); });
    };
    each("Image7", "Thumbnail", w.Image7);
    f("VScroll1", "Scroll the thumbnails", w.VScroll1);
    each("Label1", "Tab", w.Label1);
    f("File1", "Files of a directory", w.File1);
    f("List2", "Directories shown", w.List2);
    f("List3", "Pictures of the directories", w.List3);
    f("List1", "Pictures of the album or list", w.List1);
    f("Image1", "Close the thumbnails", w.Image1);
    f("Timer1", "Sends the thumbnails to the back", w.Timer1);

    f("fu", "File menu", w.fu);
    f("sledir", "Other directory", w.sledir);
    f("adir", "One more directory", w.adir);
    f("rd", "Recent directories", w.rd);
    each("lastf", "Recent directory", w.lastf);
    f("eksi", "Exit", w.eksi);
    f("vvuu", "View menu", w.vvuu);
    each("howf", "What the column shows", w.howf);
    f("howlef", "The column is shown", w.howlef);
    f("fva", "Favorites menu", w.fva);
    each("fvmn", "Item of the Favorites menu", w.fvmn);
    f("hh", "Help menu", w.hh);
    each("hlp", "Item of the Help menu", w.hlp);
    f("ze", "Menu of a thumbnail", w.ze);
    each("remv", "Item of the thumbnail's menu", w.remv);
}

}  // namespace quill::viewer
