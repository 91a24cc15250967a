#include "viewer/picture_window.h"

#include "files/directory.h"
#include "files/mounts.h"
#include "files/path.h"
#include "shell/about_box.h"
#include "shell/main_workflow.h"
#include "shell/small_window.h"
#include "viewer/copy_file.h"
#include "viewer/favorites_menu.h"
#include "viewer/frame_window.h"
#include "viewer/open_pictures.h"
#include "viewer/picture_images.h"
#include "viewer/picture_layout.h"
#include "viewer/reduced_form.h"
#include "viewer/thumbnail_column.h"

#include <array>
#include <utility>

namespace quill::viewer {
namespace {

constexpr int bar_thickness = 255;  // twips
constexpr std::string_view add_to_list = "Add this picture to current Favorites list";

void drop_request(frmPic& w) {
    if (w.ticket != 0) w.context.platform.pictures().cancel(std::exchange(w.ticket, 0));
    stop_images(w);
}

void caption_file_menu(frmPic& w) {
    w.fmen.caption = "&File";
    w.fopen.caption = "Change the directory of pictures to open";
    w.adir.caption = "Add another directory to the left preview window";
    w.rd.caption = "Recently opened directories";
    w.lastf(15).caption = "-";
    w.lastf(16).caption = "Clear last opened directories list";
    constexpr std::array<std::pair<int, const char*>, 9> captions = {
        {{2, "Save as (Copy the file to outside of the PICS file)"},
         {4, "Shrink picture"},
         {5, "Enlarge picture"},
         {6, "Print"},
         {8, "Scrollbars enabled on/off"},
         {9, "Autopan on/off"},
         {10, "Slideshow on/off"},
         {11, "Toolbar on/off"},
         {13, "Autopan properties"}}};
    for (const auto& [i, caption] : captions) w.f(i).caption = caption;
    for (const int i : {4, 5, 6, 9, 10, 11, 13}) w.f(i).enabled = false;
    w.f(8).checked = true;
    w.ssp.caption = "Slideshow Speed";
    w.ssp.enabled = false;
    w.mend.caption = "Close";
}

void caption_zoom_menus(frmPic& w) {
    w.zi.caption = "Zoom In";
    w.zox.caption = "Zoom Out";
    w.zmen.caption = "Zoom Level";
    w.zo.for_each([&](int i, controls::MenuItem& item) {
        item.caption = zoom_level(i).caption;
        w.zl(i).caption = item.caption;
    });
}

void caption_adjust_menu(frmPic& w) {
    w.admen.caption = "Adust";
    w.fliph.caption = "Flip horizontally";
    w.flipv.caption = "Flip vertically";
    w.rotaten.caption = "Rotate 90 degrees";
    w.rotatea.caption = "Rotate any angle";
    w.rotaten.enabled = w.rotatea.enabled = false;
    w.lsid.caption = w.gbh.caption = "-";
    w.sm(1).caption = "Always stretch picture to fit";
    w.sm(2).caption = "Normal mode (scrollbars/zoom)";
    w.sm(2).checked = w.scm(2).checked = true;
    constexpr std::array<const char*, 8> colors = {
        "Gamma up",      "Gamma down",   "-", "Increase brightness", "Decrease brightness", "-",
        "More contrast", "Less contrast"};
    w.mdm.for_each([&](int i, controls::MenuItem& item) {
        item.caption = colors.at(static_cast<std::size_t>(i));
        item.enabled = false;
    });
}

void caption_other_menus(frmPic& w) {
    w.favme.caption = "Favorites";
    w.addcur.caption = add_to_list;
    caption_favorites(w.favmen);
    w.wins.caption = "Window";
    w.tile.caption = "Tile";
    w.cascade.caption = "Cascade";
    w.tabs.caption = "Tabs";
    w.hlm.caption = "Help";
    caption_help(w.h);
    w.ipm(1).caption = add_to_list;
    w.ipm(3).caption = "Zoom in";
    w.ipm(4).caption = "Zoom out";
    w.ipm(5).caption = "Zoom level";
    w.scm(1).caption = "Always stretch picture to fit window";
    w.scm(2).caption = "Normal mode (scrollbars/zoom)";
    w.fhv(1).caption = "Flip horizontally";
    w.fhv(2).caption = "Flip vertically";
}

void wire_file_menu(frmPic& w) {
    shell::Context& context = w.context;
    w.fmen.click = [&w] { open_file_menu(w); };
    w.fopen.click = [&context] {
        unload_column(context);
        frmOpen& opener = show_open_pictures(context);
        opener.List1.clear();
    };
    w.adir.click = [&context] { add_another_directory(context); };
    w.f(2).click = [&w] { save_copy(w); };
    w.f(8).click = [&w] {
        w.f(8).checked = !w.f(8).checked;
        lay_out(w);
    };
    w.mend.click = w.close = [&w] { close_picture_window(w); };
}

/// Mirrors the picture; an animation does not change, since its next frame would not be mirrored.
void flip_still(frmPic& w, Axis axis) {
    stop_images(w);
    flip(w, axis);
}

void wire_picture_menus(frmPic& w) {
    w.zi.click = w.ipm(3).click = [&w] { zoom_in(w); };
    w.zox.click = w.ipm(4).click = [&w] { zoom_out(w); };
    w.zo.for_each(
        [&w](int i, controls::MenuItem& item) { item.click = w.zl(i).click = [&w, i] { set_zoom_level(w, i); }; });
    w.fliph.click = w.fhv(1).click = [&w] { flip_still(w, Axis::horizontal); };
    w.flipv.click = w.fhv(2).click = [&w] { flip_still(w, Axis::vertical); };
    for (const int i : {1, 2}) w.sm(i).click = w.scm(i).click = [&w] { toggle_fit_mode(w); };
    w.HScroll1.change = w.VScroll1.change = [&w] { follow_scroll_bars(w); };
}

void wire_images(frmPic& w) {
    w.page_back.caption = "&Previous page";
    w.page_on.caption = "&Next page";
    w.page_back.click = [&w] { turn_page(w, -1); };
    w.page_on.click = [&w] { turn_page(w, 1); };
    w.frame_time.enabled = false;
    w.frame_time.tick = [&w] { end_frame(w); };
}

void wire_other_menus(frmPic& w) {
    shell::Context& context = w.context;
    w.addcur.click = [&w] { add_picture_to_favorites(w); };
    w.ipm(1).click = [&w] {
        if (w.addcur.enabled) add_picture_to_favorites(w);
    };
    wire_favorites(context, w.favmen);
    w.tile.click = [&context] { arrange(show_frame(context), Arrangement::tiled); };
    w.cascade.click = [&context] { arrange(show_frame(context), Arrangement::cascaded); };
    w.tabs.click = [&context] {
        frmMDI& frame = show_frame(context);
        frame.tabbed = !frame.tabbed;
    };
    wire_help(context, w.h);
    w.activate = [&w] {
        const tittwo* const column = w.context.windows.loaded<tittwo>();
        w.addcur.enabled = !w.Label1.text.empty() && (column == nullptr || !shows_favorites(*column));
    };
}

}  // namespace

frmPic::frmPic(shell::Context& shared) : context(shared) {
    Label1.visible = Image20.visible = opb.visible = npb.visible = false;
    HScroll1.visible = VScroll1.visible = note.visible = pages.visible = false;
    HScroll1.height = VScroll1.width = bar_thickness;
    ipu.visible = false;
    caption_file_menu(*this);
    caption_zoom_menus(*this);
    caption_adjust_menu(*this);
    caption_other_menus(*this);
    wire_file_menu(*this);
    wire_picture_menus(*this);
    wire_images(*this);
    wire_other_menus(*this);
    if (context.session.OpenerLoaded) close_open_pictures(context);
}

frmPic::~frmPic() {
    drop_request(*this);
}

void close_picture_window(frmPic& w) {
    drop_request(w);
    for (frmPic*& slot : w.context.session.PicsTable) {
        if (slot == &w) slot = nullptr;
    }
    w.visible = false;
    w.context.windows.unload(w);
}

void open_file_menu(frmPic& w) {
    for (int i = 0; i <= 14; ++i) w.lastf(i).caption.clear();
}

void save_copy(frmPic& w) {
    shell::Context& context = w.context;
    auto& chooser = context.windows.load<shell::Form4>();
    chooser.caption = "Copy / save";
    chooser.Frame1.visible = false;
    chooser.Frame2.visible = chooser.Label1.visible = true;
    chooser.Command1.caption = "Copy here";
    chooser.Label1.text = w.caption;
    chooser.Label2.text = w.Label1.text;
    chooser.Dir1.path = files::current_directory();
    chooser.Drive1.drive = files::drive_of(chooser.Dir1.path, files::drives());
    chooser.Drive1.change = [&chooser] { chooser.Dir1.path = chooser.Drive1.drive; };
    chooser.Dir1.change = [&chooser] { chooser.Drive1.drive = files::drive_of(chooser.Dir1.path, files::drives()); };
    chooser.Command1.click = [&chooser, shared = context]() mutable {
        const std::string source = files::join(chooser.Label2.text, chooser.Label1.text);
        say_where_copied(shared.platform, source, chooser.Dir1.path);
        shared.windows.unload<shell::Form4>();
    };
    chooser.Command2.click = chooser.close = [shared = context]() mutable { shared.windows.unload<shell::Form4>(); };
    chooser.visible = true;
}

}  // namespace quill::viewer
