#include "desktop/event_loop.h"

#include <QApplication>

#include <exception>
#include <utility>

namespace quill::desktop {

void EventLoop::hand_in(const controls::Action& event) {
    if (!event || ended_ || breathing_) return;
    if (depth_ == 0) since_begin_.start();
    const controls::Action action = event;  // it may be replaced while it runs
    std::string reason;
    ++depth_;
    try {
        action();
    } catch (const platform::SessionEnd& how) {
        session_end_ = how;
        end();
    } catch (const platform::ProcessEnd&) {
        end();
    } catch (const std::exception& error) {
        reason = error.what();
    } catch (...) {
        reason = "unknown failure";
    }
    if (depth_ == 1 && !ended_ && std::exchange(breathed_, false)) drop_waiting_input();
    --depth_;
    if (ended_) return;
    if (after_event) after_event(depth_ == 0);
    if (!reason.empty() && failed) failed(reason);
    if (depth_ == 0) hand_in_what_waits();
}

void EventLoop::hand_in_later(controls::Action event) {
    waiting_.push_back(std::move(event));
    if (depth_ == 0) hand_in_what_waits();
}

void EventLoop::hand_in_what_waits() {
    for (const controls::Action& event : std::exchange(waiting_, {})) hand_in(event);
}

void EventLoop::interrupt(const controls::Action& stop) {
    const controls::Action action = stop;
    controls::run(action);
}

int EventLoop::run() {
    return ended_ ? 0 : QApplication::exec();
}

void EventLoop::end() {
    ended_ = true;
    QCoreApplication::exit(0);
}

std::optional<platform::SessionEnd> EventLoop::begin_again() {
    if (!session_end_) return std::nullopt;
    waiting_.clear();
    breathed_ = false;
    ended_ = false;
    return std::exchange(session_end_, std::nullopt);
}

void EventLoop::check_ended() const {
    if (ended_) throw platform::ProcessEnd{};
}

void EventLoop::breathe() {
    if (breathing_) return;
    breathed_ = breathing_ = true;
    QCoreApplication::processEvents();
    breathing_ = false;
    check_ended();
}

void EventLoop::drop_waiting_input() {
    drops_input_ = true;
    QCoreApplication::processEvents();
    drops_input_ = false;
}

}  // namespace quill::desktop
