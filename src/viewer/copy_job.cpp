#include "viewer/copy_job.h"

#include "files/directory.h"
#include "files/mounts.h"
#include "files/path.h"
#include "shell/long_run.h"
#include "text/ascii.h"
#include "viewer/copy_file.h"
#include "viewer/favorites_list.h"

#include <cerrno>
#include <sys/stat.h>

namespace quill::viewer {
namespace {

void enter_directory(SavPic& w, const std::string& directory) {
    w.Dir1.path = directory;
    w.Drive1.drive = files::drive_of(directory, files::drives());
    w.File1.set_directory(directory);
}

/// The result of copying the pictures of a list.
struct Copied {
    std::size_t renamed = 0;  ///< copied under another name than their own
    std::vector<std::string> failed;
};

Copied copy_all(shell::Context& context, SavPic& w, const std::vector<std::string>& pictures) {
    Copied copied;
    shell::LongRun run(context.platform, {w, w.doing, w.Picture3, w.Picture2, w.stop, w.stop_wanted},
                       "Copying the pictures of the list");
    for (std::size_t i = 0; i < pictures.size() && run.goes_on(i, pictures.size()); ++i) {
        const Result<std::string> copy = copy_into(pictures[i], w.Dir1.path);
        if (!copy) copied.failed.push_back(pictures[i]);
        if (copy && files::name_of(*copy) != files::name_of(pictures[i])) ++copied.renamed;
        w.File1.refresh();
    }
    return copied;
}

/// Reports anything unexpected; nothing if every picture was copied under its own name.
void report(platform::Platform& platform, const Copied& copied) {
    constexpr std::size_t most_named = 10;
    std::string text;
    if (copied.renamed > 0) {
        text = "There were files of the same names already: " + std::to_string(copied.renamed) +
               " of the copies got a name like \"name (2)\". ";
    }
    if (!copied.failed.empty()) {
        text += "Pictures that could not be copied: " + std::to_string(copied.failed.size()) + "\n";
        for (std::size_t i = 0; i < copied.failed.size() && i < most_named; ++i) text += "\n" + copied.failed[i];
    }
    if (!text.empty()) platform.message(text);
}

void copy_list(shell::Context& context, SavPic& w) {
    const Copied copied = copy_all(context, w, favorite_pictures(context.session.FavListPath));
    context.windows.unload<SavPic>();
    report(context.platform, copied);
}

void create_directory(shell::Context& context, SavPic& w) {
    const std::string name = context.platform.input(
        {.text = "What would you like to call the new directory to create in " + text::to_lower(w.Dir1.path) + "?"});
    if (name.empty()) return;
    const std::string directory = files::join(w.Dir1.path, name);
    constexpr mode_t usual = 0777;
    if (mkdir(directory.c_str(), usual) == 0) {
        enter_directory(w, directory);
    } else {
        context.platform.message(system_error(errno).text);
    }
}

}  // namespace

SavPic& show_copy_job(shell::Context& context) {
    SavPic& w = load_pictures_window(context);
    w.caption = "Copy files on favorites list to a directory";
    w.Frame1.visible = w.Frame2.visible = false;
    w.Picture1.visible = true;
    w.Command1.caption = "Copy files to this directory";
    w.Command10.caption = "Create a new directory here";
    w.Command2.caption = "Cancel";
    enter_directory(w, files::current_directory());
    w.Drive1.change = [&w] { enter_directory(w, w.Drive1.drive); };
    w.Dir1.change = [&w] { enter_directory(w, w.Dir1.path); };
    w.Command1.click = [&context, &w] { copy_list(context, w); };
    w.Command10.click = [&context, &w] { create_directory(context, w); };
    w.Command2.click = w.close = [&context] { context.windows.unload<SavPic>(); };
    w.visible = true;
    return w;
}

}  // namespace quill::viewer
