#pragma once

#include <string>

namespace quill::desktop {

/// Shows the user guide, a set of pages of its own, in a window that follows its links. One window serves all calls.
/// Nothing outside the guide's folder is shown; links to the network go to the desktop's browser.
void show_guide(const std::string& first_page);

}  // namespace quill::desktop
