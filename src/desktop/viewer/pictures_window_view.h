#pragma once

#include "desktop/view.h"
#include "viewer/save_pictures.h"

namespace quill::desktop {

/// The window that manages the favorites lists, copies their pictures, and shows the progress of long work.
class PicturesWindowView final : public View {
  public:
    PicturesWindowView(viewer::SavPic& window, EventLoop& events);

  protected:
    void on_shown() override;

  private:
    QWidget* make_lists();
    QWidget* make_copy_panel();
    QWidget* make_progress();

    viewer::SavPic& w_;
};

}  // namespace quill::desktop
