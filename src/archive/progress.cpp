#include "archive/progress.h"

namespace quill::zip {

bool WatchKeeper::count(std::uint64_t bytes) {
    constexpr std::chrono::milliseconds pause(50);
    progress_.bytes_done += bytes;
    progress_.bytes = std::max(progress_.bytes, progress_.bytes_done);
    if (stopped_ || !watch_) return !stopped_;
    const auto now = std::chrono::steady_clock::now();
    if (now < next_) return true;
    next_ = now + pause;
    stopped_ = !watch_(progress_);
    return !stopped_;
}

}  // namespace quill::zip
