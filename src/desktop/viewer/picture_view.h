#pragma once

#include "desktop/view.h"
#include "desktop/viewer/picture_pane.h"
#include "desktop/viewer/viewer_frame.h"
#include "viewer/picture_window.h"

#include <array>

namespace quill::desktop {

/// A picture window, in the viewer's frame.
class PictureView final : public View {
  public:
    PictureView(viewer::frmPic& window, EventLoop& events, ViewerDesk& desk);
    ~PictureView() override;

  protected:
    void show_or_hide(bool visible) override;

  private:
    QList<QAction*> make_menus();
    QMenu* make_file_menu();
    QMenu* make_window_menu();
    void list_windows(QMenu* menu);
    void make_popup();
    QWidget* make_pages();
    void connect_pane();
    bool press_key(int key);
    void take_size(QSize client);
    void place();

    viewer::frmPic& w_;
    ViewerDesk& desk_;
    PicturePane* pane_;
    QPointer<QMdiSubWindow> sub_window_;
    Drawn<std::array<int, 4>> placed_;
};

}  // namespace quill::desktop
