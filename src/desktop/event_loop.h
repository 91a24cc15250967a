#pragma once

#include "controls/control.h"

#include <QElapsedTimer>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

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

    /// Lets the desktop draw, move and uncover windows during a long run. Nothing else happens meanwhile: keys, clicks
    /// and other events are dropped, but for what stops the run.
    void breathe();
    bool breathing() const { return breathing_; }

    /// Does what a Stop button asks for, at once, in the middle of a run.
    void interrupt(const controls::Action& stop);

    /// Hands `event` in when the action that runs now is over.
    void hand_in_later(controls::Action event);

    /// Milliseconds since the outermost action began.
    std::int64_t running_for() const { return since_begin_.elapsed(); }

    /// Returns true for keys and clicks that were meant for what was there before or during a long run.
    bool drops_input() const { return drops_input_ || breathing_; }

    /// Ends the breathing for the time of a box that waits for the user.
    class WaitsForUser {
      public:
        explicit WaitsForUser(EventLoop& events) : events_(events), was_(std::exchange(events.breathing_, false)) {}
        ~WaitsForUser() { events_.breathing_ = was_; }
        WaitsForUser(const WaitsForUser&) = delete;
        WaitsForUser& operator=(const WaitsForUser&) = delete;

      private:
        EventLoop& events_;
        bool was_;
    };

    std::function<void(bool outermost)> after_event;
    std::function<void(const std::string& reason)> failed;

  private:
    void drop_waiting_input();
    void hand_in_what_waits();

    int depth_ = 0;
    QElapsedTimer since_begin_;
    std::vector<controls::Action> waiting_;
    bool ended_ = false;
    bool breathing_ = false;
    bool breathed_ = false;
    bool drops_input_ = false;
};

}  // namespace quill::desktop
