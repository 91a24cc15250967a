#include "desktop/viewer/frame_view.h"

#include <QScreen>
#include <QTimer>

namespace quill::desktop {

FrameView::FrameView(viewer::frmMDI& window, EventLoop& events, ViewerDesk& desk)
    : View(window, new ViewerFrame, events), w_(window), viewer_frame_(static_cast<ViewerFrame&>(frame())) {
    name_controls(window);
    desk.frame = &viewer_frame_;
    on_sync([this, arranged = std::uint64_t{0}]() mutable {
        if (std::exchange(arranged, w_.arranged) != w_.arranged) arrange();
    });
    on_sync([this, tabbed = Drawn<bool>()]() mutable {
        tabbed.update(w_.tabbed, [&](bool now) {
            viewer_frame_.area().setViewMode(now ? QMdiArea::TabbedView : QMdiArea::SubWindowView);
        });
    });
}

void FrameView::show_or_hide(bool visible) {
    if (visible) viewer_frame_.setGeometry(viewer_frame_.screen()->availableGeometry());
    visible ? viewer_frame_.showMaximized() : viewer_frame_.hide();
    if (!visible) return;
    // At the start of the program the window manager may show the main window after this one, and above it.
    constexpr int until_shown = 150;  // milliseconds
    QTimer::singleShot(until_shown, &viewer_frame_, [this] {
        viewer_frame_.raise();
        viewer_frame_.activateWindow();
    });
}

void FrameView::arrange() {
    QMdiArea& area = viewer_frame_.area();
    area.setViewMode(QMdiArea::SubWindowView);
    if (w_.arrangement == viewer::Arrangement::tiled) area.tileSubWindows();
    if (w_.arrangement == viewer::Arrangement::cascaded) area.cascadeSubWindows();
}

}  // namespace quill::desktop
