#include "zip/archive_leaving.h"

#include "encoder/file_chooser.h"
#include "files/directory.h"
#include "files/path.h"
#include "shell/main_window.h"
#include "zip/archive_run.h"
#include "zip/archive_saving.h"

#include <unistd.h>

namespace quill::zip {
namespace {

enum StartMode { back_to_main_window = 1, another_window_took_over = 3 };

/// Unloads the window: returns to the main window, or ends the process.
void leave(arcview& w) {
    shell::Context& context = w.context;
    const int mode = context.session.StartMode;
    if (mode == back_to_main_window) {
        auto& main = context.windows.load<shell::swit>();
        shell::show_idle_captions(main);
        main.apt(3).visible = main.opt(3).visible = false;
        main.Label3.text.clear();
        main.Label1.visible = false;
        main.visible = true;
    }
    w.visible = false;
    context.windows.unload<encoder::cmdg>();  // it adds to this archive
    context.windows.unload<arcview>();
    if (mode != back_to_main_window && mode != another_window_took_over) context.platform.end_process();
}

/// Deletes the untouched files that were made here. Returns false where the user stops it.
bool remove_untouched_files(arcview& w) {
    ArchiveRun run(w, "Deleting the unpacked files");
    WorkCopies& copies = w.archives.copies();
    for (std::size_t row = 0; row < copies.count(); ++row) {
        if (!run.goes_on({row, copies.count(), 0, 0})) return false;
        copies.remove_untouched(row);
    }
    return true;
}

/// Deletes the untouched files that were made here, then the directories that are empty without them. Returns false
/// where the user stops it: the window stays, and unpacks again what is opened.
bool remove_own_files(arcview& w) {
    if (!remove_untouched_files(w)) return false;
    files::change_directory(files::dir_of(w.ArchivePath));
    for (auto path = w.made_directories.rbegin(); path != w.made_directories.rend(); ++path) rmdir(path->c_str());
    if (w.work_dir_is_private) rmdir(w.context.session.WorkDir.c_str());
    return true;
}

}  // namespace

void RepackAndExit(arcview& w) {
    const std::string& work_dir = w.context.session.WorkDir;
    if (!files::change_directory(work_dir) || !files::same_file(files::current_directory(), work_dir)) {
        w.context.platform.warn(work_dir + " can't be entered, so no file was deleted.");
        return;
    }
    const Unwatched unwatched(w);
    if (!settle_changes(w)) return;
    clear_away_and_leave(w);
}

void gogo(arcview& w) {
    const bool yes = w.context.platform.ask(
        {.text = "Are you sure you want to exit leaving these files uncompressed in \n" + w.context.session.WorkDir +
                 "?\n((You can move the files to a more permanent directory by clicking the \nmove button or repack "
                 "the contents using the Repack (suitcase) button.))",
         .no_is_default = true,
         .question_mark = true});
    const Unwatched unwatched(w);
    if (yes && settle_changes(w)) leave(w);
}

void close_archive_window(arcview& w) {
    const Unwatched unwatched(w);
    if (!settle_changes(w)) return;
    if (w.work_dir_is_private && !remove_own_files(w)) return;
    leave(w);
}

void close_book_archive(arcview& w) {
    w.context.session.StartMode = another_window_took_over;
    clear_away_and_leave(w);
}

void clear_away_and_leave(arcview& w) {
    if (remove_own_files(w)) leave(w);
}

}  // namespace quill::zip
