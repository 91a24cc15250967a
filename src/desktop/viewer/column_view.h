#pragma once

#include "desktop/view.h"
#include "desktop/viewer/thumbnail_grid.h"
#include "desktop/viewer/viewer_frame.h"

class QToolButton;

namespace quill::desktop {

/// The column of thumbnails at the left of the viewer's frame.
class ColumnView final : public View {
  public:
    ColumnView(viewer::tittwo& window, EventLoop& events, ViewerDesk& desk);
    ~ColumnView() override;

  protected:
    void show_or_hide(bool visible) override;

  private:
    QWidget* make_tabs();
    QToolButton* make_tab(int tab);
    void connect_grid();
    QList<QAction*> make_menus();

    viewer::tittwo& w_;
    ViewerDesk& desk_;
    ThumbnailGrid* grid_;
};

}  // namespace quill::desktop
