#include "viewer/frame_window.h"

#include "files/directory.h"
#include "files/path.h"
#include "viewer/open_pictures.h"
#include "viewer/picture_names.h"
#include "viewer/picture_window.h"
#include "viewer/thumbnail_column.h"

#include <utility>
#include <vector>

namespace quill::viewer {

frmMDI::frmMDI(shell::Context& context) : pictures(context.platform.pictures()) {
    caption = "Lumenreel Pro 2014 Micro Version";
    width = context.platform.machine().screen_width();
    height = context.platform.machine().screen_height();
    List1.visible = false;
    close = [context]() mutable { close_frame(context); };
}

void arrange(frmMDI& frame, Arrangement arrangement) {
    frame.tabbed = false;
    frame.arrangement = arrangement;
    ++frame.arranged;
}

frmMDI& show_frame(shell::Context& context) {
    auto& frame = context.windows.load<frmMDI>(context);
    frame.visible = true;
    return frame;
}

void close_frame(shell::Context& context) {
    resetviewer(context);
    for (frmPic* window : context.session.PicsTable) {
        if (window != nullptr) close_picture_window(*window);
    }
    close_open_pictures(context);
    context.windows.unload<tittwo>();
    context.windows.unload<frmMDI>();
}

void resetviewer(shell::Context& context) {
    context.session.PicsMode = 0;
    frmMDI* const frame = context.windows.loaded<frmMDI>();
    if (frame == nullptr) return;
    if (frame->List1.count() > 1) {
        for (const std::string& name : frame->List1.items()) {
            files::remove_file(files::join(album_directory(context.session), name));
        }
    }
    frame->List1.clear();
}

void forget_unpacked(frmMDI& frame, const std::string& name) {
    std::vector<std::string> names = frame.List1.items();
    std::erase_if(names, [&](const std::string& each) {
        return each == name || (is_album_thumbnail(each) && picture_of_album_thumbnail(each) == name);
    });
    frame.List1.assign(std::move(names));
}

std::string album_directory(const shell::Session& session) {
    return files::join(session.AppDir, "temp");
}

}  // namespace quill::viewer
