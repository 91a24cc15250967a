#include "desktop/viewer/column_view.h"

#include "desktop/pieces.h"
#include "desktop/shown_text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

namespace quill::desktop {
namespace {

constexpr int twips_per_pixel = 15;

}  // namespace

ColumnView::ColumnView(viewer::tittwo& window, EventLoop& events, ViewerDesk& desk)
    : View(window, new QWidget, events), w_(window), desk_(desk), grid_(new ThumbnailGrid(window)) {
    name_controls(window);
    auto* layout = new QVBoxLayout(&frame());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(make_tabs());
    layout->addWidget(grid_, 1);
    QLabel* empty = text_label();
    empty->setAlignment(Qt::AlignCenter);
    empty->setText(QStringLiteral("No pictures"));
    empty->setEnabled(false);
    layout->addWidget(empty);
    on_sync([this, empty] { empty->setVisible(viewer::source_list(w_).count() == 0); });
    grid_->setObjectName(QStringLiteral("thumbnails"));
    grid_->setAccessibleName(QStringLiteral("Pictures"));
    frame().setFocusProxy(grid_);
    connect_grid();
    const QList<QAction*> menus = make_menus();
    bind(w_.Timer1, &frame(), w_.Timer1.interval);
    on_sync([this] { grid_->sync(); });
    if (!desk.frame) return;
    const int width = std::max(w_.width / twips_per_pixel, grid_->minimumWidth());
    desk.frame->add_column(&frame(), {menus, [this] { hand_in(w_.activate); }}, width);
}

ColumnView::~ColumnView() {
    destroy_frame();
}

QToolButton* ColumnView::make_tab(int tab) {
    viewer::Tab& label = w_.Label1(tab);
    auto* button = new QToolButton;
    bind(label, static_cast<QWidget*>(button));
    button->setText(shown(label.text));
    button->setCheckable(true);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    QObject::connect(button, &QToolButton::clicked, button, [this, &label] { hand_in(label.click); });
    button->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(button, &QWidget::customContextMenuRequested, button,
                     [this, &label] { hand_in(label.right_press); });
    on_sync([button, &label] { button->setChecked(label.border == 1); });
    return button;
}

QWidget* ColumnView::make_tabs() {
    auto* area = new QWidget;
    auto* layout = new QHBoxLayout(area);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    layout->addWidget(make_tab(0));
    layout->addWidget(make_tab(1));
    layout->addStretch(1);
    auto* close = new QToolButton;
    bind(w_.Image1, close);
    on_sync([close] { close->setText(QStringLiteral("\u2715")); });
    close->setToolTip(QStringLiteral("Close the preview"));
    close->setAutoRaise(true);
    close->setFocusPolicy(Qt::TabFocus);
    layout->addWidget(close);
    return area;
}

void ColumnView::connect_grid() {
    auto* popup = new QMenu(grid_);
    bind(w_.ze, popup, w_.remv.all());
    grid_->opened = [this](std::size_t row) {
        hand_in([this, row] { viewer::click_row(w_, row, viewer::MouseButton::left); });
    };
    grid_->menu_wanted = [this, popup](std::size_t row, QPoint at) {
        bool wanted = false;
        hand_in([&] { wanted = viewer::click_row(w_, row, viewer::MouseButton::right); });
        if (wanted) popup->popup(at);
    };
    grid_->delete_wanted = [this](std::size_t row) {
        hand_in([this, row] {
            if (viewer::click_row(w_, row, viewer::MouseButton::right) && w_.remv(2).enabled) {
                viewer::delete_selected(w_);
            }
        });
    };
    grid_->looked_at = [this](std::size_t first, std::size_t count) {
        hand_in([this, first, count] { viewer::look_at_rows(w_, first, count); });
    };
}

QList<QAction*> ColumnView::make_menus() {
    auto* file = new QMenu(&frame());
    bind(w_.sledir, file->addAction(QString()));
    bind(w_.adir, file->addAction(QString()));
    bind(w_.rd, file->addMenu(QString()), w_.lastf.all());
    file->addSeparator();
    bind(w_.eksi, file->addAction(QString()));
    bind(w_.fu, file);
    QMenu* view = bind(w_.vvuu, new QMenu(&frame()), {&w_.howf(0), &w_.howf(1), &w_.howlef});
    QMenu* favorites = bind(w_.fva, new QMenu(&frame()), w_.fvmn.all());
    QMenu* help = bind(w_.hh, new QMenu(&frame()), w_.hlp.all());
    return {file->menuAction(), view->menuAction(), favorites->menuAction(), help->menuAction()};
}

void ColumnView::show_or_hide(bool visible) {
    frame().setVisible(visible);
    if (visible) grid_->setFocus();
}

}  // namespace quill::desktop
