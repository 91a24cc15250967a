#pragma once

#include <string>

namespace quill::desktop {

/// Shows the user guide, a set of pages, in its own window, which follows its links. One window serves all calls. Shows
/// nothing outside the guide's folder; links to the network go to the desktop's browser.
void show_guide(const std::string& first_page);

}  // namespace quill::desktop
