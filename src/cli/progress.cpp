#include "cli/progress.h"

#include "cli/report.h"

#include <algorithm>
#include <ostream>
#include <string_view>
#include <utility>

namespace quill::cli {
namespace {

constexpr auto quiet_time = std::chrono::milliseconds(500);
constexpr auto time_between_draws = std::chrono::milliseconds(100);
constexpr std::uint64_t cells = 30;
constexpr std::string_view erase_line = "\r\x1b[K";

}  // namespace

ProgressBar::ProgressBar(const Console& console, bool wanted, Clock clock)
    : console_(console),
      wanted_(wanted && console.err_is_terminal),
      clock_(std::move(clock)),
      next_draw_(clock_() + quiet_time) {}

void ProgressBar::show(const std::string& label, std::uint64_t done, std::uint64_t total) {
    if (!wanted_ || total == 0) return;
    const Time now = clock_();
    if (now < next_draw_) return;
    next_draw_ = now + time_between_draws;
    const double part = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    const auto filled = static_cast<std::size_t>(part * cells);
    console_.err << erase_line << '[' << std::string(filled, '#') << std::string(cells - filled, ' ') << "] "
                 << static_cast<int>(part * 100) << " % " << printable(label) << std::flush;
    drawn_ = true;
}

void ProgressBar::clear() {
    if (std::exchange(drawn_, false)) console_.err << erase_line << std::flush;
}

}  // namespace quill::cli
