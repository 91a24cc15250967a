#pragma once

#include "cli/console.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace quill::cli {

/// Shows the progress of long work on one line of standard error: only if that is a terminal, and only after the first
/// half second.
class ProgressBar {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Clock = std::function<Time()>;

    explicit ProgressBar(const Console& console, bool wanted = true, Clock clock = std::chrono::steady_clock::now);
    ~ProgressBar() { clear(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Draws `done` of `total` bytes and `label`, at most ten times a second.
    void show(const std::string& label, std::uint64_t done, std::uint64_t total);

    /// Erases the line, so that other output can be written.
    void clear();

  private:
    const Console& console_;
    bool wanted_;
    Clock clock_;
    Time next_draw_;
    bool drawn_ = false;
};

}  // namespace quill::cli
