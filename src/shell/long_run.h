#pragma once

#include "controls/control.h"
#include "platform/platform.h"

#include <cstdint>
#include <string>

namespace quill::shell {

struct swit;

/// The controls of a window that show a long run and let the user stop it.
struct RunPanel {
    controls::Window& window;
    controls::Label& doing;   ///< the current step
    controls::Picture& bar;   ///< the whole bar
    controls::Picture& done;  ///< its filled part: `left` is the progress
    controls::Button& stop;
    bool& stop_wanted;  ///< the user has asked to end the run
};

/// Returns the panel of the main window.
RunPanel run_panel(swit& window);

/// A long operation: shows the current step, the progress and a button that stops it, and hides them at its end. A run
/// that begins on a panel where another one is active joins that one, and one Stop ends both.
class LongRun {
  public:
    /// REQUIRES: the panel's window outlives it.
    LongRun(platform::Platform& platform, RunPanel panel, std::string doing);
    ~LongRun();
    LongRun(const LongRun&) = delete;
    LongRun& operator=(const LongRun&) = delete;

    /// Shows `doing` as the current step.
    void now(std::string doing);

    /// Shows how much of the work is done. Returns false if the user wants to stop.
    bool goes_on(std::uint64_t done, std::uint64_t total);

    bool stopped() const { return panel_.stop_wanted; }

  private:
    platform::Platform& platform_;
    RunPanel panel_;
    bool joined_;
};

}  // namespace quill::shell
