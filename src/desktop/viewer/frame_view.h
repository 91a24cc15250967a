#pragma once

#include "desktop/view.h"
#include "desktop/viewer/viewer_frame.h"
#include "viewer/frame_window.h"

namespace quill::desktop {

/// The viewer's frame. Views of the windows in it find it through the desk.
class FrameView final : public View {
  public:
    FrameView(viewer::frmMDI& window, EventLoop& events, ViewerDesk& desk);

  protected:
    void show_or_hide(bool visible) override;

  private:
    void arrange();

    viewer::frmMDI& w_;
    ViewerFrame& viewer_frame_;
};

}  // namespace quill::desktop
