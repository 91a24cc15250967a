#pragma once

#include "controls/control.h"
#include "platform/pictures.h"
#include "shell/session.h"
#include "viewer/shown_picture.h"

#include <cstddef>
#include <optional>
#include <string>

namespace quill::viewer {

/// A scroll bar of a picture's pane: from 1 to `maximum`, in pixels.
struct PaneBar : controls::ScrollBar {
    int left = 0, top = 0, width = 0, height = 0;
    std::size_t small_change = 1, large_change = 20;
};

/// The position in a file of several images.
struct ImageRun {
    std::size_t shown = 0;
    std::size_t count = 1;
    int repeats = 0;                             ///< remaining rounds of an animation; -1: for ever
    platform::Pictures::Ticket ticket = 0;       ///< of the request for another image; 0 if none is waiting
    std::optional<platform::Picture> next = {};  ///< the animation's next frame, decoded ahead
    std::size_t next_index = 0;
    bool overdue = false;  ///< show the next frame as soon as it is decoded
};

/// A window that shows one picture. Its arithmetic is in picture_layout.h, its opening in open_document.h.
struct frmPic : controls::Window {
    std::string Tag;             // number of its slot in PicsTable
    controls::Label Label1;      // directory of the picture; empty if it can't go on a favorites list; never shown
    controls::Picture Picture1;  // pane that clips the picture
    ShownPicture Image1;         // displayed picture
    ShownPicture Image20;        // the same as loaded; never shown
    PaneBar HScroll1;            // scrolls across
    PaneBar VScroll1;            // scrolls down
    controls::Picture opb;       // source of a flip; never shown
    controls::Picture npb;       // result of a flip; never shown
    controls::Label note;        // why the picture is missing or incomplete
    controls::Timer frame_time;  // of a frame of an animation
    controls::Frame pages;       // choice of a page, if there are several
    controls::Button page_back;
    controls::Button page_on;
    controls::Label page_number;  // "Page 1 of 3"

    controls::MenuItem fmen;   // menu File
    controls::MenuItem fopen;  // other directory
    controls::MenuItem adir;   // one more directory
    controls::MenuItem rd;     // menu of recent directories
    controls::ControlArray<controls::MenuItem> lastf{0, 1,  2,  3,  4,  5,  6,  7, 8,
                                                     9, 10, 11, 12, 13, 14, 15, 16};  // its items; 15 is a line
    controls::ControlArray<controls::MenuItem> f{2, 4, 5, 6, 8, 9, 10, 11, 13};       // further items of File
    controls::MenuItem ssp;                                                           // slideshow speed
    controls::MenuItem mend;                                                          // close the window
    controls::MenuItem zi;                                                            // zoom in
    controls::MenuItem zox;                                                           // zoom out
    controls::MenuItem zmen;                                                          // menu Zoom Level
    controls::ControlArray<controls::MenuItem> zo{1,  2,  3,  4,  5,  6,  7,  8,  9, 10,
                                                  11, 12, 13, 14, 15, 16, 17, 18, 19};  // its levels
    controls::MenuItem favme;                                                           // menu Favorites
    controls::MenuItem addcur;                                                          // add the picture to the list
    controls::ControlArray<controls::MenuItem> favmen{1, 2, 3, 4, 5, 6, 7};  // further items; 2 and 6 are lines
    controls::MenuItem admen;                                                // menu Adust
    controls::MenuItem fliph;                                                // flip horizontally
    controls::MenuItem flipv;                                                // flip vertically
    controls::MenuItem rotaten;                                              // rotate by 90 degrees
    controls::MenuItem rotatea;                                              // rotate by any angle
    controls::MenuItem lsid;                                                 // line
    controls::ControlArray<controls::MenuItem> sm{1, 2};                     // fit mode, normal mode
    controls::MenuItem gbh;                                                  // line
    controls::ControlArray<controls::MenuItem> mdm{0, 1, 2, 3, 4, 5, 6, 7};  // gamma to contrast; 2 and 5 are lines
    controls::MenuItem wins;                                                 // menu Window: the windows of the frame
    controls::MenuItem tile;                                                 // picture windows side by side
    controls::MenuItem cascade;                                              // overlapping picture windows
    controls::MenuItem tabs;                                                 // picture windows as pages behind tabs
    controls::MenuItem hlm;                                                  // menu Help
    controls::ControlArray<controls::MenuItem> h{1, 3, 5};                   // its items

    controls::MenuItem ipu;                                      // menu of a right click
    controls::ControlArray<controls::MenuItem> ipm{1, 3, 4, 5};  // add to the list, zoom in, out, level
    controls::ControlArray<controls::MenuItem> zl{1,  2,  3,  4,  5,  6,  7,  8,  9, 10,
                                                  11, 12, 13, 14, 15, 16, 17, 18, 19};  // its zoom levels
    controls::ControlArray<controls::MenuItem> scm{1, 2};                               // fit mode, normal mode
    controls::ControlArray<controls::MenuItem> fhv{1, 2};                               // the flips

    std::string path;                       ///< of the picture
    platform::Pictures::Ticket ticket = 0;  ///< of the request for the picture; 0 if none is waiting
    ImageRun images = {};
    bool full_screen = false;

    explicit frmPic(shell::Context& shared);
    ~frmPic() override;

    shell::Context context;
};

/// Closes the window. Its slot is not reused.
void close_picture_window(frmPic& window);

/// Updates the menu File when it opens.
void open_file_menu(frmPic& window);

/// Lets the user choose where to copy the picture's file.
void save_copy(frmPic& window);

/// Names every control once: f(name, role, control).
template <class F>
void visit_controls(frmPic& w, F&& f) {
    using controls::member_name;
    const auto each = [&](const char* array, const char* role, auto& controls) {
        controls.for_each([&](int i, auto& control) { f(member_name(array, i), role, control); });
    };
    f("Label1", "Directory of the picture", w.Label1);
    f("Picture1", "Pane of the picture", w.Picture1);
    f("Image1", "Picture", w.Image1);
    f("Image20", "Picture as loaded", w.Image20);
    f("HScroll1", "Scroll across", w.HScroll1);
    f("VScroll1", "Scroll down", w.VScroll1);
    f("opb", "Source of a flip", w.opb);
    f("npb", "Result of a flip", w.npb);
    f("note", "What is wrong with the picture", w.note);
    f("frame_time", "Time of a frame", w.frame_time);
    f("pages", "Pages", w.pages);
    f("page_back", "Previous page", w.page_back);
    f("page_on", "Next page", w.page_on);
    f("page_number", "Number of the page", w.page_number);

    f("fmen", "File menu", w.fmen);
    f("fopen", "Other directory", w.fopen);
    f("adir", "One more directory", w.adir);
    f("rd", "Recent directories", w.rd);
    each("lastf", "Recent directory", w.lastf);
    each("f", "Item of the File menu", w.f);
    f("ssp", "Slideshow speed", w.ssp);
    f("mend", "Close the window", w.mend);
    f("zi", "Zoom in", w.zi);
    f("zox", "Zoom out", w.zox);
    f("zmen", "Zoom levels", w.zmen);
    each("zo", "Zoom level", w.zo);
    f("favme", "Favorites menu", w.favme);
    f("addcur", "Add the picture to the list", w.addcur);
    each("favmen", "Item of the Favorites menu", w.favmen);
    f("admen", "Adjust menu", w.admen);
    f("fliph", "Flip horizontally", w.fliph);
    f("flipv", "Flip vertically", w.flipv);
    f("rotaten", "Rotate by 90 degrees", w.rotaten);
    f("rotatea", "Rotate by any angle", w.rotatea);
    f("lsid", "Line", w.lsid);
    each("sm", "Size of the picture", w.sm);
    f("gbh", "Line", w.gbh);
    each("mdm", "Colors of the picture", w.mdm);
    f("wins", "Window menu", w.wins);
    f("tile", "Windows beside each other", w.tile);
    f("cascade", "Windows over each other", w.cascade);
    f("tabs", "Windows as pages", w.tabs);
    f("hlm", "Help menu", w.hlm);
    each("h", "Item of the Help menu", w.h);

    f("ipu", "Menu of the picture", w.ipu);
    each("ipm", "Item of the picture's menu", w.ipm);
    each("zl", "Zoom level in the picture's menu", w.zl);
    each("scm", "Size of the picture in its menu", w.scm);
    each("fhv", "Flip in the picture's menu", w.fhv);
}

}  // namespace quill::viewer
