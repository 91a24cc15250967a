#pragma once

#include "desktop/view.h"
#include "shell/about_box.h"

namespace quill::desktop {

/// Shows the program's name, version and licence.
class AboutView final : public View {
  public:
    AboutView(shell::AboutBox& window, EventLoop& events);

  private:
    shell::AboutBox& w_;
};

}  // namespace quill::desktop
