#pragma once

#include "desktop/view.h"
#include "shell/about_box.h"

namespace quill::desktop {

/// Says what program this is.
class AboutView final : public View {
  public:
    AboutView(shell::AboutBox& window, EventLoop& events);

  private:
    shell::AboutBox& w_;
};

}  // namespace quill::desktop
