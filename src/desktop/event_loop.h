#pragma once

#include "controls/control.h"
#include "platform/platform.h"

#include <QElapsedTimer>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quill::desktop {

/// Turns the desktop's events into calls on the program's state: no exception of the program reaches Qt.
///
/// Events nest: while one opens a box or repaints, others arrive. Only after the outermost one does the work run that
/// must not happen below a running action.
class EventLoop {
  public:
    /// Runs `event`, then `after_event`; a ProcessEnd or SessionEnd in it ends the loop, and any other exception goes
    /// to `failed`. Does nothing once the process is ending.
    void hand_in(const controls::Action& event);

    /// Runs Qt's loop until the process ends or the last window is closed; returns the exit status.
    int run();

    /// Ends the loop and all loops within it.
    void end();
    bool ended() const { return ended_; }

    /// Returns how a session ended that another one follows, and makes the loop ready for that; nullopt if the process
    /// ends.
    std::optional<platform::SessionEnd> begin_again();

    /// Returns true if no action is running.
    bool idle() const { return depth_ == 0; }

    /// Throws ProcessEnd if the process ended while the caller waited for the user.
    void check_ended() const;

    /// Lets the desktop draw, move and uncover windows during a long run. Nothing else happens meanwhile: keys, clicks
    /// and other events are dropped, except for those that stop the run.
    void breathe();
    bool breathing() const { return breathing_; }

    /// Runs the action of a Stop button at once, in the middle of a run.
    void interrupt(const controls::Action& stop);

    /// Runs `event` after the current action.
    void hand_in_later(controls::Action event);

    /// Returns the milliseconds since the outermost action began.
    std::int64_t running_for() const { return since_begin_.elapsed(); }

    /// Returns true for keys and clicks meant for the windows before or during a long run.
    bool drops_input() const { return drops_input_ || breathing_; }

    /// Suspends the breathing while a box waits for the user.
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
    std::optional<platform::SessionEnd> session_end_;
    bool breathing_ = false;
    bool breathed_ = false;
    bool drops_input_ = false;
};

}  // namespace quill::desktop
