#include "encoder/chooser_select.h"

#include "decoder/virus_guard.h"
#include "encoder/encode_file.h"
#include "encoder/yenc_encode.h"
#include "files/directory.h"
#include "files/path.h"
#include "shell/main_window.h"
#include "text/ascii.h"

#include <algorithm>

namespace quill::encoder {
namespace {

constexpr std::string_view nothing_selected =
    "  No file was selected, if you do not wish to select a file, click on the Cancel button.";
constexpr std::string_view no_program = "You did not select a program name.";
constexpr std::string_view no_contents = "This file has no contents";
constexpr std::string_view last_collect_step = "Step Four - Copy files into the zip file and compress them.";

bool says_what_is_missing(shell::Context& context, const std::string& name, std::string_view text) {
    if (!name.empty()) return false;
    context.platform.message(std::string(text));
    return true;
}

/// Puts `directory` first in the list, without duplicates.
void remember_directory(shell::Session& session, const std::string& directory) {
    constexpr std::size_t most = 20;
    std::vector<std::string>& recent = session.RecentDirs;
    std::erase(recent, directory);
    recent.insert(recent.begin(), directory);
    if (recent.size() > most) recent.pop_back();
}

/// Unpacks a PICS file into the emptied temporary directory, for the viewer.
void open_pics_file(shell::Context& context, cmdg& w, const std::string& path) {
    if (context.routes.open_pics) {
        w.visible = false;
        w.File1.set_directory(files::join(context.session.AppDir, "temp"));
        for (const std::string& name : w.File1.items()) {
            const std::string old = files::join(w.File1.directory(), name);
            if (!files::same_file(old, path)) files::remove_file(old);
        }
        context.routes.open_pics(path);
    } else {
        shell::say_not_yet(context.platform, "open PICS files");
    }
    context.windows.unload<cmdg>();
}

/// Passes the file to the main window, which offers it. Only a PICS file is opened here.
void open_selected(shell::Context& context, cmdg& w) {
    const std::string name = w.File1.selected_item();
    if (says_what_is_missing(context, name, nothing_selected)) return;
    shell::Session& session = context.session;
    session.SelectedDir = w.Dir1.path;
    session.SelectedFile = name;
    const std::string path = files::join(w.Dir1.path, name);
    constexpr std::string_view pics = ".pics";
    if (name.size() > pics.size() && text::ends_with_ignoring_case(name, pics)) {
        open_pics_file(context, w, path);
        return;
    }
    shell::swit& main = context.windows.load<shell::swit>();
    main.Picture2.visible = false;  // the results of the previous file stay in their list
    session.ZipPassword.clear();
    const auto size = files::file_size(path);
    if (size && *size == 0) {
        context.platform.message(std::string(no_contents));
        main.Label3.text.clear();
        shell::show_idle_captions(main);
        main.apt(3).visible = main.opt(3).visible = false;
    } else {
        main.Label3.text = path;
        shell::show_file_captions(main, name);
        const std::string kind = text::to_lower(text::last(name, 3));
        main.apt(3).visible = main.opt(3).visible = kind == "zip" || kind == "htx";
    }
    context.windows.unload<cmdg>();
}

/// Checks the file to be scanned with the chosen program.
void start_anti_virus(shell::Context& context, cmdg& w) {
    const std::string name = w.File1.selected_item();
    if (says_what_is_missing(context, name, no_program)) return;
    const std::string target =
        w.scan_target.empty() ? files::join(context.session.SelectedDir, context.session.SelectedFile) : w.scan_target;
    const std::string program = files::join(w.Dir1.path, name);
    const std::string directory = w.Dir1.path;
    context.windows.unload<cmdg>();
    decoder::scan_with(context, program, target, directory);
}

/// Adds the selected files to those for the create wizard. The window stays open for more.
void collect_selected(shell::Context& context, cmdg& w) {
    const std::vector<std::size_t> rows = w.File1.chosen_rows();
    if (says_what_is_missing(context, rows.empty() ? std::string() : w.File1.items()[rows.front()], nothing_selected))
        return;
    shell::swit& main = context.windows.load<shell::swit>();
    bool last_was_added = false;
    for (const std::size_t row : rows) {
        const std::string name = w.File1.items()[row];
        const auto& chosen = w.List2.items();
        last_was_added = std::find(chosen.begin(), chosen.end(), name) == chosen.end();
        if (!last_was_added) continue;
        main.List1.add(name);
        main.List2.add(w.chosenDir + name);
        w.List2.add(name);
        if (w.routes.hunt_links) w.routes.hunt_links(w.chosenDir + name);
    }
    if (!last_was_added) return;
    main.Label12.text = std::to_string(main.List1.count()) + " files";
    w.Command2.caption = "Done";
    main.Label4.text = last_collect_step;
}

void encode_selected(shell::Context& context, cmdg& w) {
    const std::string name = w.File1.selected_item();
    if (says_what_is_missing(context, name, nothing_selected)) return;
    const ChooserMode mode = w.mode();
    const std::string path = w.chosenDir + name;
    if (mode == ChooserMode::encode_yenc) {
        yencod(context, path);
    } else {
        encod(context, static_cast<int>(mode) - static_cast<int>(ChooserMode::encode_uue) + 1, path);
    }
}

void add_selected_to_archive(shell::Context& context, cmdg& w) {
    if (says_what_is_missing(context, w.File1.selected_item(), nothing_selected)) return;
    controls::run(w.routes.add_chosen_files);
    controls::run(w.routes.show_archive_rows);
    context.windows.unload<cmdg>();
}

}  // namespace

void select_files(shell::Context& context, cmdg& w) {
    w.List3.clear();
    w.List4.clear();
    w.Command3.enabled = w.Command4.enabled = w.Command5.enabled = false;
    const ChooserMode mode = w.mode();
    if (w.File1.selected && (opens(mode) || encodes(mode))) remember_directory(context.session, w.Dir1.path);
    if (opens(mode)) {
        open_selected(context, w);
    } else if (mode == ChooserMode::anti_virus) {
        start_anti_virus(context, w);
    } else if (mode == ChooserMode::add_to_archive) {
        add_selected_to_archive(context, w);
    } else if (collects(mode)) {
        collect_selected(context, w);
    } else {
        encode_selected(context, w);
    }
}

void cancel_chooser(shell::Context& context, cmdg& w) {
    shell::swit& main = context.windows.load<shell::swit>();
    main.Option1.chosen = true;
    main.visible = true;
    if (collects(w.mode())) controls::run(main.Command1.click);
    context.windows.unload<cmdg>();
}

}  // namespace quill::encoder
