#pragma once

#include "viewer/picture_window.h"

#include <QAbstractScrollArea>
#include <QImage>

#include <functional>

namespace quill::desktop {

/// Shows the picture of a window, scrolled if it is larger than the pane. It keeps the window's scroll bars in step
/// with its own, which cover the whole picture from its first pixel.
class PicturePane final : public QAbstractScrollArea {
  public:
    explicit PicturePane(viewer::frmPic& window);

    /// Draws the changes.
    void sync();

    /// Returns how much of a pane of `size` the scroll bars take if the picture is too large in one direction.
    QSize bars_beside(QSize size) const;

    std::function<void(double factor, QPointF at)> zoomed;  ///< called with a point in the screen's own pixels
    std::function<void(double right, double down)> panned;
    std::function<void()> closed;
    std::function<void(QPoint at)> menu_wanted;  ///< in the screen's coordinates
    std::function<void()> scrolled;              ///< a scroll bar was moved; the window's bars already agree with it
    std::function<void(QSize size)> resized;
    std::function<bool(int key)> key_pressed;  ///< returns true if the key has a meaning

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    QSizeF displayed() const;  ///< size of the picture on the screen, in logical pixels
    void lay_out();
    void take_bars();
    const QImage& scaled(QSize size);

    viewer::frmPic& w_;
    QImage image_;
    QImage scaled_;
    std::uint64_t revision_ = 0;
    QPointF drag_from_;
    bool dragging_ = false;
    bool syncing_ = false;
};

}  // namespace quill::desktop
