#pragma once

namespace quill::desktop {

/// Returns true if there is a screen to draw on: a display server named by the environment that answers, or a Qt
/// platform that needs none. Without one Qt itself would abort the process.
bool has_display();

}  // namespace quill::desktop
