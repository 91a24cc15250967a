#include "zip/archive_run.h"

#include "shell/main_window.h"

#include <utility>

namespace quill::zip {
namespace {

shell::RunPanel panel_for(arcview& w) {
    if (!w.visible) return shell::run_panel(w.context.windows.load<shell::swit>());
    return {w, w.doing, w.bar, w.bar_done, w.stop, w.stop_wanted};
}

}  // namespace

ArchiveRun::ArchiveRun(arcview& w, const std::string& doing)
    : archives_(w.archives),
      before_(std::exchange(archives_.progress, [this](const Progress& done) { return goes_on(done); })),
      run_(w.context.platform, panel_for(w), doing) {
    w.stop_wanted = false;
}

ArchiveRun::~ArchiveRun() {
    archives_.progress = std::move(before_);
}

bool ArchiveRun::goes_on(const Progress& done) {
    return done.bytes == 0 ? run_.goes_on(done.members_done, done.members) : run_.goes_on(done.bytes_done, done.bytes);
}

}  // namespace quill::zip
