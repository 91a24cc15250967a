#include "viewer/file_run.h"

#include <algorithm>

namespace quill::viewer {
namespace {

std::string percent(double fraction) {
    return std::to_string(static_cast<int>(std::min(fraction, 1.0) * 100)) + "%";
}

}  // namespace

FileRun::FileRun(shell::Context& context, const std::string& doing)
    : context_(context),
      panel_(show_progress_panel(context.windows)),
      run_(context.platform, {panel_, panel_.doing, panel_.Picture3, panel_.Picture2, panel_.stop, panel_.stop_wanted},
           doing) {
    panel_.Picture5.visible = false;
}

FileRun::~FileRun() {
    context_.windows.unload<SavPic>();
}

bool FileRun::goes_on(std::uint64_t done, std::uint64_t total) {
    panel_.Label5.text = percent(total == 0 ? 1 : static_cast<double>(done) / static_cast<double>(total));
    return run_.goes_on(done, total);
}

bool FileRun::goes_on(std::uint64_t done, std::uint64_t total, std::size_t index, std::size_t count) {
    const double of_all = count > 1 ? static_cast<double>(index) / static_cast<double>(count - 1) : 1;
    panel_.Picture5.visible = true;
    panel_.Picture6.left = static_cast<int>(of_all * full_bar);
    panel_.Label2.text = percent(of_all);
    return goes_on(done, total);
}

}  // namespace quill::viewer
