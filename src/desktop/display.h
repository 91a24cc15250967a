#pragma once

namespace quill::desktop {

/// Whether there is a screen to draw on: a display server named by the environment that answers, or a Qt platform that
/// needs none. Qt itself would abort the process without one.
bool has_display();

}  // namespace quill::desktop
