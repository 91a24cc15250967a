#pragma once

class QAbstractButton;
class QObject;

/// The buttons that stop a long run: the only ones that do something while it goes on.
namespace quill::desktop {

/// Makes `button` one of them.
void mark_stop_button(QAbstractButton* button);

bool is_stop_button(const QObject* object);

/// Presses the one that is on the screen, if there is one.
void press_stop_button();

}  // namespace quill::desktop
