#pragma once

#include <QHash>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QSplitter>

#include <functional>

namespace quill::desktop {

/// The parts of a window in the frame that the menu bar shows while it is active.
struct FrameMember {
    QList<QAction*> menus;
    std::function<void()> activated;
};

/// The viewer's frame on the screen: the column on the left, the other windows beside it.
class ViewerFrame final : public QMainWindow {
  public:
    ViewerFrame();
    ~ViewerFrame() override;

    /// Puts `content` into its own window in the frame.
    QMdiSubWindow* add_window(QWidget* content, FrameMember member);

    /// Puts `content` on the left.
    void add_column(QWidget* content, FrameMember member, int width);

    QMdiArea& area() { return *area_; }

    /// Returns the picture windows' entries for a menu that leads to them.
    QList<QMdiSubWindow*> windows() const { return area_->subWindowList(); }

    void set_whole_screen(bool whole);

  private:
    void turn_to(QWidget* content);
    void follow_focus(QWidget* now);

    QSplitter* sides_;
    QMdiArea* area_;
    QPointer<QWidget> column_;
    QPointer<QWidget> active_;
    QHash<QWidget*, FrameMember> members_;
};

/// Holds the frame for the views of the windows in it.
struct ViewerDesk {
    QPointer<ViewerFrame> frame;
};

}  // namespace quill::desktop
