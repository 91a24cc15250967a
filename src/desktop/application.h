#pragma once

#include "desktop/event_loop.h"

#include <QApplication>

namespace quill::desktop {

/// The Qt application of the program: the last place where something thrown is caught.
class Application final : public QApplication {
  public:
    Application(int& argc, char** argv, EventLoop& events);

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    EventLoop& events_;
};

}  // namespace quill::desktop
