#include "desktop/application.h"

#include "desktop/clear_style.h"
#include "desktop/stop_button.h"

#include <QKeyEvent>
#include <QShortcutEvent>
#include <QStyle>

namespace quill::desktop {
namespace {

bool is_user_input(const QEvent& event) {
    switch (event.type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
        case QEvent::Wheel:
        case QEvent::Shortcut:
        case QEvent::ContextMenu:
        case QEvent::InputMethod:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return true;
        default:
            return false;
    }
}

/// Returns true for an event of a key that has been held down since before the run.
bool is_repeated_key(const QEvent& event) {
    const bool key = event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
    return key && static_cast<const QKeyEvent&>(event).isAutoRepeat();
}

bool is_escape(const QEvent& event) {
    if (event.type() == QEvent::KeyPress) return static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
    return event.type() == QEvent::Shortcut &&
           static_cast<const QShortcutEvent&>(event).key() == QKeySequence(Qt::Key_Escape);
}

}  // namespace

bool is_dropped(const EventLoop& events, QObject* receiver, const QEvent& event) {
    if (!events.drops_input() || !is_user_input(event)) return false;
    if (!events.breathing()) return true;
    if (receiver->isWindowType()) return false;
    if (!is_escape(event)) return !is_stop_button(receiver) || is_repeated_key(event);
    press_stop_button();
    return true;
}

Application::Application(int& argc, char** argv, EventLoop& events) : QApplication(argc, argv), events_(events) {
    setApplicationName(QStringLiteral("quillbright"));
    setDesktopFileName(QStringLiteral("org.quillbright.quillbright"));
    setAttribute(Qt::AA_DontShowIconsInMenus);
    if (style()->name() == QLatin1String("fusion")) setStyle(new ClearStyle);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    if (is_dropped(events_, receiver, *event)) {
        event->accept();
        return true;
    }
    bool handled = false;
    try {
        handled = QApplication::notify(receiver, event);
    } catch (...) {
        const controls::Action report = [failure = std::current_exception()] { std::rethrow_exception(failure); };
        events_.breathing() ? events_.hand_in_later(report) : events_.hand_in(report);
    }
    return handled;
}

}  // namespace quill::desktop
