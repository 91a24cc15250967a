#include "viewer/list_manager.h"

#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "viewer/favorites_list.h"
#include "viewer/thumbnail_column.h"

#include <algorithm>

namespace quill::viewer {
namespace {

constexpr std::string_view extension = ".fpl";

std::string path_of(const shell::Session& session, const std::string& name) {
    return files::join(session.AppDir, name + std::string(extension));
}

void fill_list(SavPic& w) {
    w.File2.refresh();
    std::vector<std::string> names = w.File2.items();
    for (std::string& name : names) name.resize(name.size() - extension.size());
    w.List1.assign(std::move(names));
}

std::string count_text(std::size_t count) {
    if (count == 0) return "No pictures on the list";
    return count == 1 ? "1 picture on the list" : std::to_string(count) + " pictures on the list";
}

void choose_list(shell::Context& context, SavPic& w) {
    const std::string name = w.List1.selected_item();
    if (name.empty()) return;
    context.session.FavListPath = path_of(context.session, name);
    w.Label4.text = count_text(favorite_pictures(context.session.FavListPath).size());
}

void open_list(shell::Context& context, SavPic& w) {
    if (w.List1.selected_item().empty()) return;
    choose_list(context, w);
    choose_tab(show_column(context), 1);
    context.windows.unload<SavPic>();
}

void create_list(shell::Context& context, SavPic& w) {
    const std::string typed = context.platform.input(
        {.text = "Enter a name for the new Favorite Pictures List you wish to create.", .title = "New Favorites List"});
    if (typed.empty()) return;
    const std::string file = files::safe_name(typed + std::string(extension));
    const Status made = file.size() > extension.size() && file.ends_with(extension)
                            ? make_favorites_list(files::join(context.session.AppDir, file))
                            : Status(Error{ErrorCode::bad_argument, 0, "that can't be the name of a file"});
    if (!made) context.platform.warn("The list could not be created: " + made.error().text + ".");
    fill_list(w);
}

void delete_list(shell::Context& context, SavPic& w) {
    const std::string name = w.List1.selected_item();
    if (name.empty()) return;
    const bool agreed =
        context.platform.ask({.text = "    Are you sure you wish to delete this Favorite list called " + name + " ?"});
    if (agreed && !files::remove_file(path_of(context.session, name))) {
        context.platform.warn("The list called " + name + " could not be deleted.");
    }
    fill_list(w);
}

void edit_list(shell::Context& context, const SavPic& w) {
    const std::string name = w.List1.selected_item();
    if (name.empty()) return;
    context.platform.message(
        "NOTE: When you have a Favorite Pictures List open, you can also remove pictures from it by right-clicking on "
        "the thumbnail of the picture in the preview window at the left.",
        "Alert --> An easier way to edit a Favorite Pictures List");
    if (!context.platform.opener().edit_text(path_of(context.session, name))) {
        context.platform.warn("No program to edit the list could be started.");
    }
}

void explain_lists(platform::Platform& platform) {
    platform.message(
        "   This window shows your Favorite Pictures Lists. Click on a list to make it the current one, or "
        "double-click "
        "on it to see its pictures in the preview window. You can create, delete and edit lists with the buttons.");
    platform.message(
        "   To put a picture on the current list, open it and choose \"Add this picture to current Favorites list\" "
        "from the menu Favorites, or from the menu of a right click on the picture.");
}

void set_captions(SavPic& w) {
    w.caption = "Favorite Picture Lists";
    w.Label3.text = "Double-click on a list below to open it";
    w.Label4.text.clear();
    w.Command6.caption = "Create a new Favorite Pictures List";
    w.Command7.caption = "Delete the selected list";
    w.Command8.caption = "Open the list into Notepad for manual editing and merging with another list";
    w.Command5.caption = "Help with Lists";
    w.Command9.caption = "Cancel and close this window";
}

}  // namespace

SavPic& show_list_manager(shell::Context& context) {
    SavPic& w = load_pictures_window(context);
    set_captions(w);
    w.Frame2.visible = true;
    w.Picture1.visible = w.Frame1.visible = false;
    w.File2.set_pattern("*" + std::string(extension));
    w.File2.set_directory(context.session.AppDir);
    w.List1.change = [&context, &w] { choose_list(context, w); };
    w.List1.double_click = [&context, &w] { open_list(context, w); };
    w.Command6.click = [&context, &w] { create_list(context, w); };
    w.Command7.click = [&context, &w] { delete_list(context, w); };
    w.Command8.click = [&context, &w] { edit_list(context, w); };
    w.Command5.click = [&context] { explain_lists(context.platform); };
    w.Command9.click = w.close = [&context] { context.windows.unload<SavPic>(); };
    fill_list(w);
    w.visible = true;
    return w;
}

}  // namespace quill::viewer
