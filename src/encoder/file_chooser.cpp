#include "encoder/file_chooser.h"

#include "encoder/chooser_select.h"
#include "encoder/link_window.h"
#include "encoder/merge_page.h"
#include "files/directory.h"
#include "files/mounts.h"
#include "files/path.h"
#include "integration/favorites.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace quill::encoder {
namespace {

using controls::run;

struct ModeRow {
    ChooserMode mode;
    std::string_view caption;
    std::string_view pattern;
};

constexpr std::string_view pages = "*.htm;*.html";
constexpr std::string_view all_files = "*.*";

constexpr std::array<ModeRow, 12> modes = {{
    {ChooserMode::open_archive, "Select a ZIP or HTX file to open or view", "*.zip;*.htx"},
    {ChooserMode::open, "Select a file to open, view or decode", all_files},
    {ChooserMode::decode, "Select a file to decode", all_files},
    {ChooserMode::add_to_archive, "Add files to zip", all_files},
    {ChooserMode::anti_virus, "Select the anti-virus program you wish to use", "*.exe"},
    {ChooserMode::collect_files, "Select files to copy into a new ZIP file", all_files},
    {ChooserMode::collect_pages, "Select .htm or .html files to copy into a new HTX file", pages},
    {ChooserMode::encode_uue, "Create a UUE encoded file", all_files},
    {ChooserMode::encode_mime, "Create a MIME encoded file", all_files},
    {ChooserMode::encode_binhex, "Create a BIN-HEX 4 file", all_files},
    {ChooserMode::encode_xxe, "Create an XXEncoded file", all_files},
    {ChooserMode::encode_yenc, "Create a yEncoded file", all_files},
}};

// The window's size in twips; the desktop enlarges it with the font.
constexpr int window_width = 14400;
constexpr int window_height = 9000;

// The division of the picture of tabs, in twips from its left.
constexpr int recent_tab_end = 2475;
constexpr int merge_tab_end = 5580;

void set_captions(cmdg& w) {
    w.go.caption = "Go";
    w.hidden_files.caption = "Show hidden files";
    w.Command1.caption = "Select";
    w.Command2.caption = "Cancel";
    w.Label1.text = "Files chosens thus far";
    w.Command3.caption = "Add valid images";
    w.Command4.caption = "Add valid pages ";
    w.Command5.caption = "Spyder hunt all links";
    w.Command6.caption = "Definitions of \"valid\" and spyder hunting";
    w.stop.caption = "Stop";
    w.Option1.caption = "Show only HTML files";
    w.Option2.caption = "Show all files in directory";
    w.Label2.text = "Short cuts to the most common favorite download directories";
    w.Label3.text = "Add a new favorite directory";
    w.Image2.caption = "Back to the files";
    w.Label5.text = "Click on a directory on the list to change it instantly";
    w.Option3.caption = "Clear recent directories list";
    w.Command11.caption = "Cancel";
    w.Label6.text = "Chosen files:";
    w.Command7.caption = "<- Add file to the above list";
    w.Command9.caption = "Merge and decode chosen files (UUE / MIME)";
    w.Command10.caption = "Merge and decode chosen files (yEnc encoded)";
    w.Command8.caption = "Clear list of chosen files     (no file deleting)";
    w.Command12.caption = "Help and explanations for these merge options";
    w.Command13.caption = "Cancel";
}

void hide_what_starts_hidden(cmdg& w) {
    w.List1.visible = w.List6.visible = w.List8.visible = false;
    w.Picture2.visible = false;
    w.Picture3.visible = true;
    w.doing.visible = w.bar.visible = w.bar_done.visible = w.stop.visible = false;
    constexpr int progress_width = 3000;
    w.bar.width = w.bar_done.width = progress_width;
    w.Image1.enabled = w.Image2.enabled = false;
    w.Command3.enabled = w.Command4.enabled = w.Command5.enabled = false;
    w.Option3.enabled = false;
    w.File1.takes_several = w.File2.takes_several = true;
    w.File1.shows_hidden = w.File2.shows_hidden = false;
}

void copy_file_names(cmdg& w) {
    w.List1.assign(w.File1.items());
}

/// Goes to a favorite or a recent directory. If it can't be entered, the chooser stays in its directory.
void go_to_shortcut(cmdg& w, const std::string& directory) {
    if (files::is_directory(directory)) enter_directory(w, directory);
}

/// Returns the directory typed into the chooser as a path: "~" is the user's own directory, "." and ".." are allowed,
/// and a relative path begins at the directory shown.
std::string typed_path(shell::Context& context, const cmdg& w) {
    std::string path = w.Text1.text;
    if (path == "~" || path.starts_with("~/")) path.replace(0, 1, context.platform.machine().home_directory());
    if (!path.starts_with('/')) path = files::join(w.Dir1.path, path);
    path = std::filesystem::path(path).lexically_normal().string();
    if (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

bool select_name(controls::FileListBox& list, const std::string& name) {
    const auto& names = list.items();
    const auto found = std::find(names.begin(), names.end(), name);
    list.selected_rows.clear();
    list.selected.reset();
    if (found == names.end()) return false;
    list.selected = static_cast<std::size_t>(found - names.begin());
    return true;
}

/// Refreshes the list of files with `how`. The current file stays selected if it is still listed, on any row.
template <class F>
void list_anew(controls::FileListBox& list, F how) {
    const std::string name = list.selected_item();
    const std::uint64_t before = list.revision();
    how(list);
    if (list.revision() != before) select_name(list, name);
}

void show_pattern(cmdg& w, std::string_view pattern) {
    w.Option1.chosen = pattern == pages;
    w.Option2.chosen = pattern == all_files;
    list_anew(w.File1, [&](controls::FileListBox& list) { list.set_pattern(std::string(pattern)); });
    copy_file_names(w);
}

void show_hidden_files(cmdg& w, bool shown) {
    w.hidden_files.checked = w.Dir1.shows_hidden = w.Dir2.shows_hidden = shown;
    for (controls::FileListBox* const list : {&w.File1, &w.File2}) {
        list->shows_hidden = shown;
        list_anew(*list, [](controls::FileListBox& l) { l.refresh(); });
    }
    copy_file_names(w);
}

/// Selects a file of the current directory by name, even if the list must show more files for that.
void select_named_file(shell::Context& context, cmdg& w, const std::string& name) {
    if (select_name(w.File1, name)) return;
    if (name.starts_with('.')) show_hidden_files(w, true);
    show_pattern(w, all_files);
    if (!select_name(w.File1, name)) context.platform.message(name + " is not a file that can be chosen here.");
}

void go_to_typed(shell::Context& context, cmdg& w) {
    if (w.Text1.text.empty()) {
        w.Text1.text = w.Dir1.path;
        return;
    }
    const std::string typed = typed_path(context, w);
    if (files::is_directory(typed)) {
        enter_directory(w, typed);
        return;
    }
    const std::string dir = files::dir_of(typed);
    if (!files::exists(typed) || !files::is_directory(dir)) {
        context.platform.message("There is no file or directory called " + typed + ".");
        w.Text1.text = w.Dir1.path;
        return;
    }
    enter_directory(w, dir);
    select_named_file(context, w, files::name_of(typed));
}

/// Returns true if `directory` can be listed; shows the system's reason if it can't.
bool can_be_listed(shell::Context& context, const std::string& directory) {
    const Result<std::vector<std::string>> listing = files::list_directories(directory);
    if (!listing) context.platform.warn(listing.error().text);
    return listing.ok();
}

void change_drive(shell::Context& context, cmdg& w, const std::string& drive) {
    if (can_be_listed(context, drive)) {
        enter_directory(w, drive);
        return;
    }
    w.Drive1.drive = files::drive_of(w.Dir1.path, files::drives());
    w.Drive2.drive = files::drive_of(w.Dir2.path, files::drives());
}

void press_tabs(cmdg& w, int x) {
    if (!w.Image1.enabled) return;
    w.Picture2.visible = true;
    if (x < recent_tab_end) w.Picture3.visible = false;
    if (x >= recent_tab_end && x < merge_tab_end) w.Picture3.visible = true;
}

void close_page(cmdg& w) {
    w.Picture2.visible = false;
    if (w.List9.count() > 0) w.Option3.enabled = true;
}

void clear_recent_directories(shell::Context& context, cmdg& w) {
    w.Option3.chosen = false;
    context.session.RecentDirs.clear();
    w.List9.clear();
    w.Option3.enabled = false;
}

/// Refreshes the list after a press on a file.
void refresh_files(cmdg& w) {
    if (w.mode() != ChooserMode::open_archive && w.mode() != ChooserMode::open) return;
    list_anew(w.File1, [](controls::FileListBox& list) { list.refresh(); });
    copy_file_names(w);
}

void wire_file_page(shell::Context& context, cmdg& w) {
    w.go.click = [&context, &w] { go_to_typed(context, w); };
    w.Drive1.change = [&context, &w] { change_drive(context, w, w.Drive1.drive); };
    w.Drive2.change = [&context, &w] { change_drive(context, w, w.Drive2.drive); };
    w.Dir1.change = [&context, &w] {
        if (can_be_listed(context, w.Dir1.path)) {
            enter_directory(w, w.Dir1.path);
        } else {
            w.Dir1.path = w.File1.directory();
        }
    };
    w.Dir2.change = [&context, &w] {
        enter_parts_directory(w, can_be_listed(context, w.Dir2.path) ? w.Dir2.path : w.File2.directory());
    };
    w.hidden_files.click = [&w] { show_hidden_files(w, w.hidden_files.checked); };
    w.File1.change = [&w] { refresh_files(w); };
    w.Command1.click = w.File1.double_click = [&context, &w] { select_files(context, w); };
    w.Command2.click = w.close = [&context, &w] { cancel_chooser(context, w); };
    w.Option1.click = [&w] { show_pattern(w, pages); };
    w.Option2.click = [&w] { show_pattern(w, all_files); };
    w.Label3.click = [&context, &w] { show_link_window(context, w.Dir1.path); };
    w.List5.change = [&w] {
        if (w.List5.selected && *w.List5.selected < w.List6.count())
            go_to_shortcut(w, w.List6.items()[*w.List5.selected]);
    };
}

void wire_tabs(shell::Context& context, cmdg& w) {
    w.Image1.press = [&w](int x) { press_tabs(w, x); };
    w.Image2.click = [&w] { close_page(w); };
    w.Option3.click = [&context, &w] { clear_recent_directories(context, w); };
    w.Command11.click = [&context] { context.windows.unload<cmdg>(); };
    w.List9.change = [&w] {
        if (!w.List9.selected) return;
        go_to_shortcut(w, w.List9.selected_item());
        w.Picture2.visible = true;
    };
}

}  // namespace

std::string_view caption_of(ChooserMode mode) {
    return modes[static_cast<std::size_t>(mode)].caption;
}

std::string_view pattern_of(ChooserMode mode) {
    return modes[static_cast<std::size_t>(mode)].pattern;
}

ChooserMode cmdg::mode() const {
    const auto row = std::find_if(modes.begin(), modes.end(), [&](const ModeRow& r) { return r.caption == caption; });
    return row == modes.end() ? ChooserMode::open : row->mode;
}

cmdg::cmdg(shell::Context& context) : context_(context) {
    width = window_width;
    height = window_height;
    left = (context.platform.machine().screen_width() - width) / 2;
    top = (context.platform.machine().screen_height() - height) / 2;
    set_captions(*this);
    hide_what_starts_hidden(*this);
    wire_file_page(context_, *this);
    wire_tabs(context_, *this);
    wire_merge_page(context_, *this);
    context.session.UserName = context.platform.machine().user_name();
    showlnks(context_, *this);
    List9.assign(context.session.RecentDirs);
    Option3.enabled = List9.count() > 0;
    enter_directory(*this, files::current_directory());
}

cmdg& show_chooser(shell::Context& context, ChooserMode mode, const std::string& directory) {
    cmdg& w = context.windows.load<cmdg>(context);
    w.caption = caption_of(mode);
    w.Command2.caption = "Cancel";
    w.List2.clear();
    const bool has_pages = mode == ChooserMode::open || mode == ChooserMode::decode;
    w.Image1.enabled = w.Image2.enabled = has_pages;
    w.Picture2.visible = false;
    w.Option1.visible = w.Option2.visible = mode != ChooserMode::anti_virus;
    w.Label1.visible = w.List2.visible = w.List3.visible = w.List4.visible = collects(mode);
    w.Command3.visible = w.Command4.visible = w.Command5.visible = w.Command6.visible = collects(mode);
    w.File1.executables_only = mode == ChooserMode::anti_virus;
    show_pattern(w, mode == ChooserMode::anti_virus ? all_files : pattern_of(mode));
    enter_directory(w, files::is_directory(directory) ? directory : files::current_directory());
    w.visible = true;
    return w;
}

void enter_directory(cmdg& w, const std::string& directory) {
    if (w.File1.directory() != directory) w.File1.clear();
    w.Dir1.path = w.Text1.text = directory;
    list_anew(w.File1, [&](controls::FileListBox& list) { list.set_directory(directory); });
    w.Drive1.drive = files::drive_of(directory, files::drives());
    w.chosenDir = files::join(directory, "");
    copy_file_names(w);
    enter_parts_directory(w, directory);
}

void enter_parts_directory(cmdg& w, const std::string& directory) {
    if (w.File2.directory() != directory) {
        w.File2.clear();
        w.List7.clear();
    }
    w.Dir2.path = directory;
    list_anew(w.File2, [&](controls::FileListBox& list) { list.set_directory(directory); });
    w.Drive2.drive = files::drive_of(directory, files::drives());
}

void showlnks(shell::Context& context, cmdg& w) {
    w.List5.clear();
    w.List6.clear();
    const std::string dir = files::join(context.session.AppParentDir, "favorites");
    for (const auto& favorite : integration::read_favorites(dir, context.platform.machine().home_directory())) {
        w.List5.add(favorite.caption);
        w.List6.add(favorite.directory);
    }
}

}  // namespace quill::encoder
