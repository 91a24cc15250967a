#include "shell/long_run.h"

#include "shell/main_window.h"

#include <algorithm>
#include <utility>

namespace quill::shell {

RunPanel run_panel(swit& window) {
    return {window, window.doing, window.Picture5, window.Picture6, window.stop, window.stop_wanted};
}

LongRun::LongRun(platform::Platform& platform, RunPanel panel, std::string doing)
    : platform_(platform), panel_(panel), joined_(panel.stop.visible) {
    now(std::move(doing));
    if (joined_) return;
    panel_.stop_wanted = false;
    panel_.done.left = 0;
    panel_.stop.click = [&wanted = panel_.stop_wanted] { wanted = true; };
    panel_.doing.visible = panel_.bar.visible = panel_.stop.visible = true;
    panel_.window.pointer = controls::MousePointer::busy;
}

LongRun::~LongRun() {
    if (joined_) return;
    panel_.stop.click = {};
    panel_.doing.visible = panel_.bar.visible = panel_.stop.visible = false;
    panel_.window.pointer = controls::MousePointer::normal;
}

void LongRun::now(std::string doing) {
    panel_.doing.text = std::move(doing);
}

bool LongRun::goes_on(std::uint64_t done, std::uint64_t total) {
    const double part = total == 0 ? 1.0 : static_cast<double>(done) / static_cast<double>(total);
    panel_.done.left = static_cast<int>(panel_.bar.width * std::min(part, 1.0));
    platform_.repaint(panel_.window);
    return !stopped();
}

}  // namespace quill::shell
