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
    controls::Label& doing;   ///< what is being done
    controls::Picture& bar;   ///< the whole bar
    controls::Picture& done;  ///< its filled part: `left` is how far it is
    controls::Button& stop;
    bool& stop_wanted;  ///< the user has asked for the end of the run
};

/// The panel of the main window.
RunPanel run_panel(swit& window);

/// Work that takes a while: shows what is being done, how far it is, and a button that stops it; hides them at its end.
/// A run that begins on a panel where another one is under way joins that one, and one Stop ends both.
class LongRun {
  public:
    /// REQUIRES: the panel's window outlives it.
    LongRun(platform::Platform& platform, RunPanel panel, std::string doing);
    ~LongRun();
    LongRun(const LongRun&) = delete;
    LongRun& operator=(const LongRun&) = delete;

    /// Says what is being done from now on.
    void now(std::string doing);

    /// Shows how much of the work is done. Returns false where the user wants no more of it.
    bool goes_on(std::uint64_t done, std::uint64_t total);

    bool stopped() const { return panel_.stop_wanted; }

  private:
    platform::Platform& platform_;
    RunPanel panel_;
    bool joined_;
};

}  // namespace quill::shell
