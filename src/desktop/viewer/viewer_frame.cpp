#include "desktop/viewer/viewer_frame.h"

#include <QApplication>
#include <QMenuBar>

namespace quill::desktop {

ViewerFrame::ViewerFrame() : sides_(new QSplitter(Qt::Horizontal)), area_(new QMdiArea) {
    sides_->setChildrenCollapsible(false);
    sides_->addWidget(area_);
    area_->setTabsMovable(true);
    area_->setTabsClosable(true);
    area_->setDocumentMode(true);
    area_->setBackground(area_->palette().brush(QPalette::Window));
    area_->setAccessibleName(QStringLiteral("Pictures"));
    setCentralWidget(sides_);
    QObject::connect(area_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* window) {
        if (window != nullptr) {
            turn_to(window->widget());
        } else if (column_ && area_->subWindowList().isEmpty()) {
            turn_to(column_);
        }
    });
    QObject::connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { follow_focus(now); });
}

/// Destroys the contents of the frame first: they notify the frame of their end.
ViewerFrame::~ViewerFrame() {
    members_.clear();
    delete takeCentralWidget();
}

QMdiSubWindow* ViewerFrame::add_window(QWidget* content, FrameMember member) {
    members_[content] = std::move(member);
    QObject::connect(content, &QObject::destroyed, this, [this, content] { members_.remove(content); });
    return area_->addSubWindow(content);
}

void ViewerFrame::add_column(QWidget* content, FrameMember member, int width) {
    members_[content] = std::move(member);
    QObject::connect(content, &QObject::destroyed, this, [this, content] { members_.remove(content); });
    column_ = content;
    sides_->insertWidget(0, content);
    sides_->setStretchFactor(0, 0);
    sides_->setStretchFactor(1, 1);
    sides_->setSizes({width, std::max(1, sides_->width() - width)});
    turn_to(content);
}

void ViewerFrame::set_whole_screen(bool whole) {
    menuBar()->setVisible(!whole);
    if (column_) column_->setVisible(!whole);
    setWindowState(whole ? windowState() | Qt::WindowFullScreen : windowState() & ~Qt::WindowFullScreen);
}

void ViewerFrame::turn_to(QWidget* content) {
    if (content == active_ || !members_.contains(content)) return;
    active_ = content;
    menuBar()->clear();
    menuBar()->addActions(members_[content].menus);
    const auto activated = members_[content].activated;
    if (activated) activated();
}

void ViewerFrame::follow_focus(QWidget* now) {
    for (QWidget* widget = now; widget != nullptr; widget = widget->parentWidget()) {
        if (members_.contains(widget)) {
            turn_to(widget);
            return;
        }
    }
}

}  // namespace quill::desktop
