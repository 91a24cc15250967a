#include "shell/select_file.h"

#include "files/directory.h"
#include "files/path.h"
#include "shell/main_window.h"
#include "text/ascii.h"

namespace quill::shell {
namespace {

bool is_archive_name(const std::string& name) {
    const std::string ending = text::to_lower(text::last(name, 3));
    return ending == "zip" || ending == "htx";
}

}  // namespace

void offer_file(Context& context, const std::string& path) {
    Session& session = context.session;
    auto& w = context.windows.load<swit>();
    w.Picture2.visible = false;  // the results of the previous file stay in their list
    hide_create_panels(w);
    const std::string directory = files::dir_of(path);
    if (!directory.empty()) session.SelectedDir = directory;
    session.SelectedFile = files::name_of(path);
    const bool empty = files::file_size(path) == 0;
    w.apt(3).visible = w.opt(3).visible = is_archive_name(path) && !empty;
    if (empty) {
        show_idle_captions(w);
    } else {
        show_file_captions(w, session.SelectedFile);
    }
    w.Label3.text = empty ? session.SelectedFile + " has no contents" : path;
    session.WorkDir = session.SelectedDir;
}

void choose_and_offer_file(Context& context) {
    auto& w = context.windows.load<swit>();
    const std::string path = context.platform.choose_file(
        {.title = "Select a file to open, view or decode", .directory = context.session.SelectedDir});
    if (path.empty()) return;
    offer_file(context, path);
    w.Label3.text = path;
    if (files::file_size(path) != 0) return;
    context.platform.message("This file has no contents");
    w.Label3.text.clear();
}

std::string selected_path(const Session& session) {
    return files::join(session.SelectedDir, session.SelectedFile);
}

}  // namespace quill::shell
