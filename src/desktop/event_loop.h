#pragma once

#include "controls/control.h"

#include <functional>
#include <string>

namespace quill::desktop {

/// Where the desktop's events become calls on the program's state: nothing that the program throws goes on into Qt.
///
/// Events nest: while one opens a box or repaints, others come in. Only the outermost one is followed by the things
/// that must not happen below a running action.
class EventLoop {
  public:
    /// Runs `event`. Its end is followed by `after_event`; a ProcessEnd in it ends the loop, and any other failure goes
    /// to `failed`. Does nothing once the process is ending.
    void hand_in(const controls::Action& event);

    /// Runs Qt's loop until the process ends or the last window is closed; returns the exit status.
    int run();

    /// Ends the loop and all loops within it.
    void end();
    bool ended() const { return ended_; }

    /// Whether no action is running.
    bool idle() const { return depth_ == 0; }

    /// Throws ProcessEnd where the process ended while the caller waited for the user.
    void check_ended() const;

    /// Lets the desktop draw, move and uncover windows during a long run. Keys and clicks wait; those that came in
    /// meanwhile are dropped when the run is over.
    void breathe();

    /// Whether a key or a click that comes now was meant for what was there before a long run.
    bool drops_input() const { return drops_input_; }

    std::function<void(bool outermost)> after_event;
    std::function<void(const std::string& reason)> failed;

  private:
    void drop_waiting_input();

    int depth_ = 0;
    bool ended_ = false;
    bool breathed_ = false;
    bool drops_input_ = false;
};

}  // namespace quill::desktop
