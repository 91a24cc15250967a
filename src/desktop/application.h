#pragma once

#include "desktop/event_loop.h"

#include <QApplication>

namespace quill::desktop {

/// Returns true if `event` is input that `receiver` must not get now. During a long run only Escape and the Stop button
/// act; input to a window of the system is passed on to one of its widgets and checked again there.
bool is_dropped(const EventLoop& events, QObject* receiver, const QEvent& event);

/// The Qt application of the program: the last place that catches an exception.
class Application final : public QApplication {
  public:
    Application(int& argc, char** argv, EventLoop& events);

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    EventLoop& events_;
};

}  // namespace quill::desktop
