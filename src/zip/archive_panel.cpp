#include "zip/archive_panel.h"

#include "files/directory.h"
#include "files/mounts.h"
#include "files/path.h"
#include "text/count.h"
#include "text/printable.h"
#include "zip/archive_document.h"
#include "zip/archive_rows.h"

#include <algorithm>
#include <string_view>

namespace quill::zip {
namespace {

constexpr unsigned usual_mode = 0777;       // less the umask
constexpr auto name_without_any = "files";  // the directory's name for the contents of ".zip"

void show_panel(arcview& w, bool extracts, const std::string& directory) {
    w.panel_extracts = extracts;
    w.panel_title.text = extracts ? "Extract to" : "Move to";
    w.Command2.caption = extracts ? "Extract the files &into this folder" : "Move the files to this directory folder";
    w.own_folder.visible = w.opens_folder.visible = extracts;
    w.Picture2.visible = true;
    show_panel_directory(w, directory);
    count_selected(w);
}

void choose_rows(arcview& w, bool selected) {
    w.take_selected.chosen = selected;
    w.take_all.chosen = !selected;
}

void show_move_panel(arcview& w, bool selected) {
    choose_rows(w, selected);
    show_panel(w, false, files::drive_of(w.Dir1.path.empty() ? w.ArchivePath : w.Dir1.path, files::drives()));
}

/// Returns true if the rows have more than one name at the top, so that they would be scattered in a directory.
bool has_many_tops(const arcview& w, const std::vector<std::size_t>& rows) {
    if (!w.listed) return false;
    const auto top_of = [&](std::size_t row) {
        const std::string path = w.listed->paths[row].path;
        return path.substr(0, path.find('/'));
    };
    return std::any_of(rows.begin(), rows.end(), [&](std::size_t row) { return top_of(row) != top_of(rows.front()); });
}

}  // namespace

void mover(arcview& w) {
    show_move_panel(w, false);
}

void choose_move(arcview& w) {
    show_move_panel(w, true);
}

void choose_extraction(arcview& w, bool selected) {
    const std::size_t chosen = w.List1.chosen_rows().size();
    choose_rows(w, chosen != 0 && (selected || (chosen > 1 && chosen < w.List1.count())));
    show_panel(w, true, files::dir_of(w.ArchivePath));
}

void count_selected(arcview& w) {
    if (!w.Picture2.visible) return;
    const std::size_t selected = w.List1.chosen_rows().size();
    w.take_all.caption =
        "All files (" + text::grouped(w.List1.count()) + (w.panel_extracts ? ")" : "), then close the archive");
    w.take_selected.caption = "Selected files (" + text::grouped(selected) + ")";
    w.take_selected.enabled = selected != 0;
    if (selected == 0) choose_rows(w, false);
    if (!w.panel_extracts) return;
    w.own_folder.caption = "In a new folder, " + as_caption(text::printable(own_folder_name(w)));
    w.own_folder.checked = has_many_tops(w, panel_rows(w));
}

void show_panel_directory(arcview& w, const std::string& directory) {
    w.Dir1.path = w.Label5.text = directory;
    w.Drive1.drive = files::drive_of(directory, files::drives());
}

void make_panel_directory(arcview& w) {
    const std::string name =
        w.context.platform.input({.text = "Type a name below for the new folder you wish to create in " + w.Dir1.path});
    if (name.empty()) return;
    const Result<std::string> made = files::make_new_directory(files::join(w.Dir1.path, name), usual_mode);
    if (made) {
        show_panel_directory(w, *made);
    } else {
        w.context.platform.warn(name + ": " + made.error().text + ".");
    }
}

std::string panel_directory(const arcview& w) {
    std::string directory = files::absolute(w.Dir1.path);
    while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
    return directory;
}

std::string own_folder_name(const arcview& w) {
    const std::string archive = files::name_of(w.ArchivePath);
    const std::string stem = archive.substr(0, files::extension_at(archive));
    return stem.empty() ? name_without_any : stem;
}

std::vector<std::size_t> panel_rows(const arcview& w) {
    return w.take_selected.chosen ? w.List1.chosen_rows() : all_rows(w);
}

}  // namespace quill::zip
