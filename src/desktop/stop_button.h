#pragma once

class QAbstractButton;
class QObject;

/// The buttons that stop a long run: the only ones that act during it.
namespace quill::desktop {

/// Makes `button` one of them.
void mark_stop_button(QAbstractButton* button);

bool is_stop_button(const QObject* object);

/// Presses the visible one, if any.
void press_stop_button();

}  // namespace quill::desktop
