#include "encoder/link_window.h"

#include "decoder/naming_window.h"
#include "encoder/file_chooser.h"
#include "files/mounts.h"
#include "files/path.h"
#include "integration/favorites.h"

namespace quill::encoder {
namespace {

using decoder::Form4;

constexpr std::string_view no_caption =
    "   You must type in a screen name for the shortcut to this directory before it can add it.";

void make_link(shell::Context& context, const Form4& window) {
    const std::string directory = window.Dir1.path;
    const std::string caption =
        context.platform.input({.text = "   Enter a Name to show for a shortcut to this directory, " + directory +
                                        ", in the list of Favorite directories.",
                                .title = "Enter name for the shortcut"});
    if (caption.empty()) {
        context.platform.message(std::string(no_caption));
        return;
    }
    const std::string favorites = files::join(context.session.AppParentDir, "favorites");
    const Status written = integration::write_favorite(favorites, {caption, directory});
    if (!written) context.platform.warn("The shortcut could not be added: " + written.error().text + ".");
    if (cmdg* const chooser = context.windows.loaded<cmdg>()) showlnks(context, *chooser);
    context.windows.unload<Form4>();
}

}  // namespace

void show_link_window(shell::Context& context, const std::string& directory) {
    Form4& window = context.windows.load<Form4>();
    window.caption = "Make a directory link";
    window.Frame1.visible = false;
    window.Frame2.visible = true;
    window.Dir1.path = directory;
    window.Drive1.drive = files::drive_of(directory, files::drives());
    window.Drive1.change = [&window] { window.Dir1.path = window.Drive1.drive; };
    window.Dir1.change = [&window] { window.Drive1.drive = files::drive_of(window.Dir1.path, files::drives()); };
    window.Command1.click = [context, &window]() mutable { make_link(context, window); };
    window.Command2.click = window.close = [context]() mutable { context.windows.unload<Form4>(); };
    window.visible = true;
}

}  // namespace quill::encoder
