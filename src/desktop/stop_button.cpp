#include "desktop/stop_button.h"

#include <QAbstractButton>
#include <QApplication>

namespace quill::desktop {
namespace {

constexpr auto mark = "stops the run";

}  // namespace

void mark_stop_button(QAbstractButton* button) {
    button->setProperty(mark, true);
    button->setCursor(Qt::ArrowCursor);
    button->setToolTip(QStringLiteral("Stop (Escape)"));
}

bool is_stop_button(const QObject* object) {
    return object->property(mark).toBool();
}

void press_stop_button() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        for (auto* button : window->findChildren<QAbstractButton*>()) {
            if (!is_stop_button(button) || !button->isVisible()) continue;
            button->click();
            return;
        }
    }
}

}  // namespace quill::desktop
