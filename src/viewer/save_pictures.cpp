#include "viewer/save_pictures.h"

namespace quill::viewer {
namespace {

constexpr int window_width = 8400, window_height = 6000;  // twips

}  // namespace

SavPic::SavPic() {
    Picture1.visible = Frame1.visible = Frame2.visible = false;
    File2.visible = false;
    Picture5.visible = false;
    Picture5.width = Picture3.width = full_bar;
    Frame1.caption = "Please wait, wrting files to the disk";
    stop.caption = "Stop";
    doing.visible = stop.visible = false;
}

SavPic& load_pictures_window(shell::Context& context) {
    context.windows.unload<SavPic>();
    auto& w = context.windows.load<SavPic>();
    w.width = window_width;
    w.height = window_height;
    w.left = (context.platform.machine().screen_width() - w.width) / 2;
    w.top = (context.platform.machine().screen_height() - w.height) / 2;
    return w;
}

SavPic& show_progress_panel(controls::Windows& windows) {
    auto& w = windows.load<SavPic>();
    w.Picture1.visible = w.Frame2.visible = false;
    w.Frame1.visible = w.Picture5.visible = true;
    w.visible = true;
    return w;
}

}  // namespace quill::viewer
