#pragma once

#include "desktop/event_loop.h"
#include "desktop/views.h"
#include "support/program.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

namespace quill::tests {

/// Windows of the program with their real views, on a scripted machine.
class ViewTest : public ::testing::Test {
  protected:
    ViewTest() {
        events.after_event = [this](bool) { views.sync_all(); };
        events.failed = [this](const std::string& reason) { failures.push_back(reason); };
    }

    /// Allows the boxes of later tests if this one has ended the program.
    ~ViewTest() override {
        if (!events.ended()) return;
        QTimer::singleShot(0, [] { QCoreApplication::quit(); });
        QCoreApplication::exec();
    }

    QWidget& frame_of(const controls::Window& window) { return views.view_of(window)->frame(); }

    /// Returns the widget of `window` with the name of one of its controls.
    template <class W = QWidget>
    W* widget(const controls::Window& window, const char* name) {
        return frame_of(window).findChild<W*>(QString::fromLatin1(name));
    }

    static void press(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = {}) {
        const QString text = key < 0x80 ? QString(QChar(key)) : QString();
        QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(widget, &down);
        QKeyEvent up(QEvent::KeyRelease, key, modifiers, text);
        QCoreApplication::sendEvent(widget, &up);
    }

    Program program;
    desktop::EventLoop events;
    desktop::Views views{program.windows, events};
    std::vector<std::string> failures;
};

}  // namespace quill::tests
