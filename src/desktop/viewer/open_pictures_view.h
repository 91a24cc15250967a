#pragma once

#include "desktop/view.h"
#include "desktop/viewer/viewer_frame.h"
#include "viewer/open_pictures.h"

class QListWidget;

namespace quill::desktop {

/// The window that brings pictures into the viewer: directories, their pictures, and a preview.
class OpenPicturesView final : public View {
  public:
    OpenPicturesView(viewer::frmOpen& window, EventLoop& events, ViewerDesk& desk);
    ~OpenPicturesView() override;

  protected:
    void show_or_hide(bool visible) override;

  private:
    QWidget* make_directories();
    QListWidget* make_files();
    QWidget* make_preview();
    QWidget* make_buttons();

    viewer::frmOpen& w_;
    ViewerDesk& desk_;
    QPointer<QMdiSubWindow> sub_window_;
    QListWidget* files_ = nullptr;
};

}  // namespace quill::desktop
