#include "archive/changing/tree_walk.h"
#include "files/directory.h"
#include "files/mounts.h"
#include "files/names.h"
#include "files/path.h"
#include "htx/picture_wizard/steps.h"
#include "shell/startup.h"
#include "text/count.h"

#include <string_view>
#include <unordered_set>

namespace quill::htx {
namespace {

constexpr std::string_view usual_kinds = "*.jpg;*.jpeg;*.bmp;*.gif";
constexpr std::string_view all_kinds = "*.jpg;*.jpeg;*.bmp;*.gif;*.png;*.webp";

std::vector<std::string> paths_of(const controls::FileListBox& list, const std::vector<std::size_t>& rows) {
    std::vector<std::string> paths;
    for (const std::size_t row : rows) paths.push_back(files::join(list.directory(), list.items().at(row)));
    return paths;
}

/// Updates the controls that depend on the list of pictures.
void show_chosen(HtxWiz& w) {
    w.chosen_count.text = text::counted(w.List1.count(), "picture");
    if (w.step == WizardStep::pictures) w.Command4.enabled = w.List1.count() != 0;
}

void show_current_file(HtxWiz& w) {
    const std::string name = w.File1.selected_item();
    w.shown_picture =
        name.empty() || w.step != WizardStep::pictures ? std::string() : files::join(w.File1.directory(), name);
}

}  // namespace

void enter_directory(HtxWiz& w, const std::string& directory) {
    if (files::list_directories(directory)) {
        if (w.File1.directory() != directory) {
            w.File1.selected.reset();
            w.File1.selected_rows.clear();
        }
        w.File1.set_directory(directory);
    } else {
        w.context.platform.warn(directory + " can't be opened.");
    }
    w.Dir1.path = w.Text6.text = w.File1.directory();
    w.Drive1.drive = files::drive_of(w.Dir1.path, files::drives());
}

void add_pictures(HtxWiz& w, const std::vector<std::string>& paths) {
    std::vector<std::string> chosen = w.List1.items();
    std::unordered_set<std::string> known(chosen.begin(), chosen.end());
    for (const std::string& path : paths) {
        if (known.insert(path).second) chosen.push_back(path);
    }
    w.List2.assign(distinct_names(chosen));
    w.List1.assign(std::move(chosen));
    show_chosen(w);
}

void HtxWiz::add_files(const std::vector<std::string>& paths) {
    std::vector<std::string> pictures;
    for (const std::string& path : paths) {
        for (const zip::TreeEntry& entry : zip::walk_tree(path, zip::NamedLink::followed)) {
            const bool is_file = entry.kind == zip::EntryKind::file;
            if (is_file && files::matches(files::name_of(entry.path), all_kinds)) pictures.push_back(entry.path);
        }
    }
    add_pictures(*this, pictures);
}

void enter_pictures(HtxWiz& w) {
    show_step(w, WizardStep::pictures);
    w.File1.set_pattern(std::string(w.other_kinds.checked ? all_kinds : usual_kinds));
    if (w.File1.directory().empty()) {
        const std::string directory = shell::in_parent_directory(w.context.session, "zip-htx directory");
        enter_directory(w, files::is_directory(directory) ? directory : files::current_directory());
    }
    w.shown_picture.clear();
    show_chosen(w);
}

void wire_pictures(HtxWiz& w) {
    w.Dir1.change = [&w] { enter_directory(w, w.Dir1.path); };
    w.Drive1.change = [&w] { enter_directory(w, w.Drive1.drive); };
    w.File1.change = [&w] { show_current_file(w); };
    w.add.click = w.File1.double_click = [&w] {
        if (w.step == WizardStep::pictures) add_pictures(w, paths_of(w.File1, w.File1.chosen_rows()));
    };
    w.add_all.click = [&w] {
        w.File1.selected_rows.clear();
        for (std::size_t row = 0; row < w.File1.count(); ++row) w.File1.selected_rows.push_back(row);
        if (w.File1.count() != 0) w.File1.selected = 0;
        add_pictures(w, paths_of(w.File1, w.File1.selected_rows));
    };
    w.reset.click = [&w] {
        w.List1.clear();
        w.List2.clear();
        show_chosen(w);
    };
    w.other_kinds.click = [&w] {
        w.File1.selected.reset();
        w.File1.selected_rows.clear();
        w.File1.set_pattern(std::string(w.other_kinds.checked ? all_kinds : usual_kinds));
    };
    w.List2.change = [&w] {
        if (w.List2.selected && *w.List2.selected < w.List1.count()) {
            w.shown_picture = w.List1.items()[*w.List2.selected];
        }
    };
}

}  // namespace quill::htx
