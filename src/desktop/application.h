#pragma once

#include "desktop/event_loop.h"

#include <QApplication>

namespace quill::desktop {

/// Returns true if `event` is input that is not for `receiver` now. During a long run Escape and the Stop button alone
/// do something; what comes to a window of the system goes on to one of its widgets, where it is looked at again.
bool is_dropped(const EventLoop& events, QObject* receiver, const QEvent& event);

/// The Qt application of the program: the last place where something thrown is caught.
class Application final : public QApplication {
  public:
    Application(int& argc, char** argv, EventLoop& events);

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    EventLoop& events_;
};

}  // namespace quill::desktop
