#pragma once

#include "desktop/view.h"
#include "viewer/save_pictures.h"

namespace quill::desktop {

/// The progress panel of long work on several files: how far all of them are, and the one at hand.
class ProgressView final : public View {
  public:
    ProgressView(viewer::SavPic& window, EventLoop& events);
};

}  // namespace quill::desktop
