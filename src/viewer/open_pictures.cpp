#include "viewer/open_pictures.h"

#include "files/directory.h"
#include "files/mounts.h"
#include "files/path.h"
#include "shell/startup.h"
#include "viewer/frame_window.h"
#include "viewer/open_album.h"
#include "viewer/open_document.h"
#include "viewer/picture_names.h"
#include "viewer/thumbnail_column.h"

#include <utility>

namespace quill::viewer {
namespace {

constexpr int window_width = 6825, window_height = 4380;  // twips
constexpr int preview_side = 256;

void drop_request(frmOpen& w) {
    if (w.ticket != 0) w.context.platform.pictures().cancel(std::exchange(w.ticket, 0));
}

std::string note_on(const platform::Picture& picture) {
    if (picture.state == platform::PictureState::failed) return "This picture can't be shown: " + picture.reason;
    return std::to_string(picture.original.width) + " x " + std::to_string(picture.original.height) + " pixels";
}

/// Shows the selected picture beside the list.
void show_preview(frmOpen& w) {
    drop_request(w);
    w.preview.take({});
    w.note.text.clear();
    const std::string name = w.File1.selected_item();
    if (name.empty() || is_album_name(name)) return;
    const std::string path = files::join(w.File1.directory(), name);
    const bool passing = w.File1.directory() == album_directory(w.context.session);
    w.ticket = w.context.platform.pictures().request(
        {.source = {.path = path}, .bounds = {preview_side, preview_side}, .thumbnail = !passing},
        [&w](const platform::Picture& picture) {
            w.ticket = 0;
            w.preview.take(picture.pixels);
            w.note.text = note_on(picture);
        });
}

/// Goes to a directory; if it can't be entered, the window stays in its own.
void enter_directory(frmOpen& w, const std::string& directory) {
    if (files::change_directory(directory)) {
        w.Dir1.path = directory;
        if (w.File1.directory() != directory) w.File1.selected.reset();
        w.File1.set_directory(directory);
    } else {
        w.context.platform.warn(directory + " can't be opened.");
        w.Dir1.path = w.File1.directory();
    }
    w.Drive1.drive = files::drive_of(w.Dir1.path, files::drives());
    show_preview(w);
}

void open_directory(frmOpen& w) {
    shell::Context context = w.context;
    w.List1.add(w.File1.directory());
    unload_column(context);
    show_column(context);
}

void open_album_file(frmOpen& w, const std::string& path) {
    shell::Context context = w.context;
    w.visible = false;
    drop_request(w);
    empty_album_directory(context.session, opener_patterns, path);
    openpics(context, path);
    close_open_pictures(context);
}

void open_one_picture(frmOpen& w, const std::string& name) {
    shell::Context context = w.context;
    const std::string directory = w.Dir1.path;
    frmPic& window = new_picture_window(context);
    window.caption = name;
    window.Label1.text = directory;
    if (context.session.PicsMode == 0) window.f(2).enabled = false;
    load_into_new_window(window, files::join(directory, name), from_opener);
}

void open_selected(frmOpen& w) {
    const std::string name = w.File1.selected_item();
    if (name.empty()) {
        open_directory(w);
    } else if (is_album_name(name)) {
        open_album_file(w, files::join(w.Dir1.path, name));
    } else {
        open_one_picture(w, name);
    }
}

void wire(frmOpen& w) {
    w.Drive1.change = [&w] { enter_directory(w, w.Drive1.drive); };
    w.Dir1.change = [&w] { enter_directory(w, w.Dir1.path); };
    w.File1.change = [&w] { show_preview(w); };
    w.File1.double_click = w.Command1.click = [&w] { open_selected(w); };
    w.all_kinds.click = [&w] {
        w.File1.selected.reset();
        w.File1.set_pattern(w.all_kinds.checked ? all_opener_patterns() : std::string(opener_patterns));
    };
    w.Command2.click = w.close = [context = w.context]() mutable { close_open_pictures(context); };
}

}  // namespace

frmOpen::frmOpen(shell::Context& shared) : context(shared) {
    context.session.OpenerLoaded = true;
    caption = "Select a new directory of pictures to open";
    width = window_width;
    height = window_height;
    List1.visible = false;
    all_kinds.caption = "Show all kinds of pictures";
    Command1.caption = "Open";
    Command2.caption = "Cancel";
    File1.set_pattern(std::string(opener_patterns));
    wire(*this);
    std::string directory = files::current_directory();
    if (directory == album_directory(context.session)) {
        directory = shell::in_parent_directory(context.session, "zip-htx directory");
    }
    enter_directory(*this, directory);
}

frmOpen::~frmOpen() {
    drop_request(*this);
}

frmOpen& show_open_pictures(shell::Context& context) {
    show_frame(context);
    auto& w = context.windows.load<frmOpen>(context);
    w.caption = "Select a new directory of pictures to open";
    w.visible = true;
    return w;
}

void close_open_pictures(shell::Context& context) {
    context.windows.unload<frmOpen>();
    context.session.OpenerLoaded = false;
}

}  // namespace quill::viewer
