#pragma once

#include "cli/console.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace quill::cli {

/// One line on standard error that tells how far long work is: nothing where that is no terminal, and nothing during
/// the first half second.
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

    /// Takes the line off the terminal, so that others can write there.
    void clear();

  private:
    const Console& console_;
    bool wanted_;
    Clock clock_;
    Time next_draw_;
    bool drawn_ = false;
};

}  // namespace quill::cli
