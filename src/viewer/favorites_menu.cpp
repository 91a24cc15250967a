#include "viewer/favorites_menu.h"

#include "files/directory.h"
#include "files/path.h"
#include "files/unfinished.h"
#include "shell/startup.h"
#include "viewer/copy_file.h"
#include "viewer/copy_job.h"
#include "viewer/favorites_list.h"
#include "viewer/frame_window.h"
#include "viewer/list_manager.h"
#include "viewer/picture_window.h"
#include "viewer/thumbnail_column.h"

#include <array>

namespace quill::viewer {
namespace {

constexpr std::array<const char*, 7> captions = {
    "Select, edit, delete, or create a new Favorites Pictures List / Photo Album",
    "-",
    "Copy all pictures of current Favorite Pictures List to a single HTX Photo Album file",
    "Copy all pictures of current Favorite Pictures List to a new or different directory",
    "Copy all pictures of current Favorite Pictures List to a single PICS group of photos file",
    "-",
    "What Favorite Pictures Lists, Favorite Pictures Album files, and HTX Photo Albums are"};

std::string full_path(const frmPic& w) {
    return w.caption.starts_with('/') ? w.caption : files::join(w.Label1.text, w.caption);
}

bool is_passing(const shell::Session& session, const std::string& path) {
    return path.starts_with(files::join(album_directory(session), ""));
}

/// Returns true if pictures of albums may be copied; asks once while the frame is open.
bool may_copy(shell::Context& context, const std::string& directory) {
    std::optional<bool>& answer = show_frame(context).copies_album_pictures;
    if (!answer) {
        answer = context.platform.ask(
            {.text = "   This picture was unpacked from an album and is deleted when the album is closed. Shall such "
                     "pictures be copied to " +
                     directory + ", so that they can go on the list?"});
    }
    return *answer;
}

/// Returns the path to put on the list for the picture at `path`; empty for none.
std::string lasting_path(shell::Context& context, const std::string& path) {
    if (!is_passing(context.session, path)) return path;
    const std::string directory = shell::in_parent_directory(context.session, "favorite pictures");
    if (!may_copy(context, directory)) return {};
    Result<files::Unfinished> made = files::make_output_directory(directory);
    const Result<std::string> copy = made ? copy_into(path, directory) : Result<std::string>(made.error());
    if (!copy) {
        context.platform.warn("The picture could not be copied to " + directory + ": " + copy.error().text + ".");
        return {};
    }
    made->finish();
    return *copy;
}

}  // namespace

void caption_favorites(controls::ControlArray<controls::MenuItem>& items) {
    items.for_each(
        [](int i, controls::MenuItem& item) { item.caption = captions.at(static_cast<std::size_t>(i - 1)); });
}

void wire_favorites(shell::Context& context, controls::ControlArray<controls::MenuItem>& items) {
    items(1).click = [&context] { show_list_manager(context); };
    const auto with_list = [&context](const shell::Routes::MakeOfPictures& make) {
        if (make) make(favorite_pictures(context.session.FavListPath));
    };
    items(3).click = [&context, with_list] { with_list(context.routes.make_picture_book); };
    items(4).click = [&context] { show_copy_job(context); };
    items(5).click = [&context, with_list] { with_list(context.routes.make_pics_file); };
    items(7).click = [&context] { favhelp(context.platform); };
}

void add_picture_to_favorites(frmPic& w) {
    platform::Platform& platform = w.context.platform;
    const std::string path = lasting_path(w.context, full_path(w));
    if (path.empty()) return;
    const Result<Added> added = add_favorite(w.context.session.FavListPath, path);
    if (!added) {
        platform.warn("The picture could not be put on the list: " + added.error().text + ".");
    } else if (*added == Added::was_there) {
        platform.message(path + " is already on the Favorite Pictures list.");
    }
}

void remove_selected_favorite(tittwo& column) {
    const std::string& list = column.context.session.FavListPath;
    Status removed = make_favorites_list(list);
    if (removed) removed = remove_favorite(list, column.selpath);
    if (!removed) {
        column.context.platform.warn("The picture could not be removed from the list: " + removed.error().text + ".");
    }
    loadfavlist(column);
}

void favhelp(platform::Platform& platform) {
    for (const char* text :
         {"   A Favorite Pictures List is a list of pictures, wherever they are on your disks. The pictures stay where "
          "they are; the list only names them. You can have as many lists as you like.",
          "   The picture preview at the left has two tabs. \"Files\" shows the pictures of the directories that you "
          "have opened, \"Favorites\" those of the current list. Right-click on a picture to take it off the list, or "
          "to delete its file.",
          "   A PICS file, or Favorite Pictures Album, holds many pictures in one file, so that they can be kept, "
          "copied "
          "and mailed together. It is as large as its pictures.",
          "   An HTX file is a book of pages, with pictures and text, in one compressed file. It can be a photo album "
          "too."}) {
        platform.message(text);
    }
}

}  // namespace quill::viewer
