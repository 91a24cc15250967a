#include "desktop/application.h"

#include "desktop/clear_style.h"

#include <QEvent>
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
        case QEvent::Wheel:
            return true;
        default:
            return false;
    }
}

}  // namespace

Application::Application(int& argc, char** argv, EventLoop& events) : QApplication(argc, argv), events_(events) {
    setApplicationName(QStringLiteral("quillbright"));
    setDesktopFileName(QStringLiteral("quillbright"));
    setAttribute(Qt::AA_DontShowIconsInMenus);
    if (style()->name() == QLatin1String("fusion")) setStyle(new ClearStyle);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    if (events_.drops_input() && is_user_input(*event)) {
        event->accept();
        return true;
    }
    bool handled = false;
    try {
        handled = QApplication::notify(receiver, event);
    } catch (...) {
        events_.hand_in([failure = std::current_exception()] { std::rethrow_exception(failure); });
    }
    return handled;
}

}  // namespace quill::desktop
