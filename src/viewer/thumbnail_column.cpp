#include "viewer/thumbnail_column.h"

#include "files/directory.h"
#include "files/path.h"
#include "viewer/favorites_list.h"
#include "viewer/favorites_menu.h"
#include "viewer/frame_window.h"
#include "viewer/list_manager.h"
#include "viewer/open_document.h"
#include "viewer/open_pictures.h"
#include "viewer/picture_names.h"
#include "viewer/reduced_form.h"

#include <algorithm>
#include <iterator>

namespace quill::viewer {
namespace {

// In twips.
constexpr int cell_width = 1455, cell_height = 1200, first_cell_top = 240;
constexpr int bar_right_edge = 1815;
constexpr int below_frame = 1320;
constexpr int patience = 1000;  // milliseconds until the column goes to the back

void place(tittwo& w) {
    w.left = 0;
    w.width = bar_right_edge;
    w.height = w.context.platform.machine().screen_height() - below_frame;
    w.Image7.for_each([](int i, PictureCell& cell) {
        cell.width = cell_width;
        cell.height = cell_height;
        cell.top = first_cell_top + cell_height * i;
    });
    w.cellpage = cells_of_page(w.context.platform.machine().screen_height());
}

void hide_lists(tittwo& w) {
    w.File1.visible = w.List1.visible = w.List2.visible = w.List3.visible = false;
    w.VScroll1.visible = w.ze.visible = false;
}

void set_captions(tittwo& w) {
    w.caption = "Left side picture preview";
    w.Label1(0).text = "Files";
    w.Label1(0).border = 1;
    w.Label1(1).text = "Favorites";
    w.Image1.caption = "Close";
    w.fu.caption = "File";
    w.sledir.caption = "Change the directory of pictures to open";
    w.adir.caption = "Add another directory to the left preview window";
    w.rd.caption = "Recently opened directories";
    w.lastf(15).caption = "-";
    w.lastf(16).caption = "Clear last opened directories list";
    w.eksi.caption = "E&xit";
    w.vvuu.caption = "&View";
    w.howf(0).caption = "Show files of current directory in left window";
    w.howf(0).checked = true;
    w.howf(1).caption = "Show a Favorites Pictures List in the left window";
    w.howlef.caption = "Show left picture preview window";
    w.howlef.checked = true;
    w.howlef.enabled = false;
    w.fva.caption = "&Favorites";
    caption_favorites(w.fvmn);
    w.hh.caption = "Help";
    caption_help(w.hlp);
    w.remv(1).caption = "Remove this picture from the current Favorite Pictures List";
    w.remv(2).caption = "Delete this picture from the current directory";
}

void list_recent_directory(tittwo& w, const std::string& directory) {
    resetviewer(w.context);
    if (!directory.empty() && files::change_directory(directory)) w.File1.set_directory(directory);
    imgrefresh(w);
}

void wire_menus(tittwo& w) {
    shell::Context& context = w.context;
    w.fu.click = [&w] {
        for (int i = 0; i <= 14; ++i) w.lastf(i).caption.clear();
    };
    w.sledir.click = [&context] {
        show_open_pictures(context).List1.clear();
        unload_column(context);
    };
    w.adir.click = [&context] { add_another_directory(context); };
    for (int i = 0; i <= 14; ++i) {
        w.lastf(i).click = [&w, i] { list_recent_directory(w, w.lastf(i).caption); };
    }
    w.eksi.click = [&context] { close_frame(context); };
    w.howf.for_each([&w](int i, controls::MenuItem& item) {
        item.click = [&w, i] { choose_tab(w, i); };
        w.Label1(i).click = item.click;
    });
    wire_favorites(context, w.fvmn);
    w.fvmn(1).click = [&context] {
        unload_column(context);
        show_list_manager(context);
    };
    wire_help(context, w.hlp);
    w.remv(1).click = [&w] { remove_selected_favorite(w); };
    w.remv(2).click = [&w] { delete_selected(w); };
}

void wire_window(tittwo& w) {
    shell::Context& context = w.context;
    w.VScroll1.change = [&w] { scroll_column(w); };
    w.Label1(1).right_press = [&context] { show_list_manager(context); };
    w.Image1.click = w.close = [&context] { unload_column(context); };
    w.activate = [&w] {
        w.at_back = false;
        w.Timer1.enabled = true;
    };
    w.Timer1.interval = patience;
    w.Timer1.enabled = false;
    w.Timer1.tick = [&w] {
        w.at_back = true;
        w.Timer1.enabled = false;
    };
}

}  // namespace

tittwo::tittwo(shell::Context& shared)
    : thumbnails(shared.platform.pictures(), files::join(album_directory(shared.session), "")), context(shared) {
    File1.set_pattern(std::string(directory_patterns));
    hide_lists(*this);
    set_captions(*this);
    place(*this);
    wire_menus(*this);
    wire_window(*this);
    if (const frmOpen* const opener = context.windows.loaded<frmOpen>()) List2.assign(opener->List1.items());
    if (context.session.OpenerLoaded) close_open_pictures(context);
}

bool shows_favorites(const tittwo& w) {
    return w.Label1(1).border == 1;
}

tittwo& show_column(shell::Context& context) {
    show_frame(context);
    const bool fresh = context.windows.loaded<tittwo>() == nullptr;
    auto& w = context.windows.load<tittwo>(context);
    if (fresh) refresh_column(w);
    w.visible = true;
    return w;
}

void unload_column(shell::Context& context) {
    if (context.windows.loaded<tittwo>() == nullptr) return;
    context.windows.unload<tittwo>();
    resetviewer(context);
}

void choose_tab(tittwo& w, int tab) {
    w.VScroll1.value = 0;
    w.VScroll1.visible = false;
    w.current.reset();
    w.Label1.for_each([&](int i, Tab& label) {
        label.border = i == tab ? 1 : 0;
        w.howf(i).checked = i == tab;
    });
    if (tab == 1) resetviewer(w.context);
    refresh_column(w);
}

PictureName picture_of_row(const tittwo& w, std::size_t row) {
    const controls::ListBox& list = source_list(w);
    if (row >= list.count()) return {};
    const std::string& item = list.items()[row];
    const std::string name = files::name_of(item);
    if (shows_favorites(w) || w.context.session.PicsMode == 1) return {item, name};
    if (w.context.session.PicsMode == 0) return {item, item};
    const std::string title = picture_of_album_thumbnail(name);
    return {files::join(album_directory(w.context.session), title), title};
}

bool click_cell(tittwo& w, int cell, MouseButton button) {
    return click_row(w, static_cast<std::size_t>(cell) + w.VScroll1.value, button);
}

bool click_row(tittwo& w, std::size_t row, MouseButton button) {
    const PictureName picture = picture_of_row(w, row);
    w.selpath = picture.path;
    if (picture.path.empty()) return false;
    w.current = row;
    if (button == MouseButton::right) {
        w.remv(1).enabled = shows_favorites(w);
        w.remv(2).enabled = !shows_favorites(w);
        return true;
    }
    opendoc(w.context, picture.path, picture.title);
    return false;
}

void delete_selected(tittwo& w) {
    platform::Platform& platform = w.context.platform;
    const std::string asked = "Are you sure you wish to delete the file called " + w.selpath + "?";
    if (!platform.ask(
            {.text = asked + " It goes to the trash, from where you can bring it back.", .no_is_default = true}))
        return;
    if (!platform.opener().move_to_trash(w.selpath)) {
        if (!platform.ask({.text = "There is no trash for this file. " + asked +
                                   " If you do you will not be able to bring it back.",
                           .no_is_default = true}))
            return;
        if (!files::remove_file(w.selpath)) platform.warn(w.selpath + " could not be deleted.");
    }
    std::erase(w.set, w.selpath);
    if (frmMDI* const frame = w.context.windows.loaded<frmMDI>()) forget_unpacked(*frame, files::name_of(w.selpath));
    w.thumbnails.forget(w.selpath);
    refresh_column(w);
}

void show_set(shell::Context& context, const std::vector<std::string>& paths) {
    std::vector<std::string> set;
    std::copy_if(paths.begin(), paths.end(), std::back_inserter(set),
                 [](const std::string& path) { return is_picture_name(files::name_of(path)); });
    if (set.empty()) {
        context.platform.message("There are no pictures here.");
        return;
    }
    unload_column(context);
    show_frame(context);
    auto& w = context.windows.load<tittwo>(context);
    w.set = std::move(set);
    refresh_column(w);
    w.visible = true;
}

void add_another_directory(shell::Context& context) {
    context.platform.message(
        "   Using this option you can have more than one directory of pictures in the left picture preview window at "
        "the same time.");
    frmOpen& opener = show_open_pictures(context);
    opener.caption = "Open an additional directory of pictures in the preview window";
    opener.List1.clear();
    if (const tittwo* const column = context.windows.loaded<tittwo>()) opener.List1.assign(column->List2.items());
}

}  // namespace quill::viewer
