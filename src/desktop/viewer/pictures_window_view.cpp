#include "desktop/viewer/pictures_window_view.h"

#include "desktop/directory_list.h"
#include "desktop/pieces.h"
#include "desktop/shown_text.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QShortcut>
#include <QVBoxLayout>

namespace quill::desktop {
namespace {

/// Updates the rows of `widget` from `list`.
void show_rows(const controls::ListBox& list, QListWidget* widget) {
    const QSignalBlocker quiet(widget);
    widget->clear();
    for (const std::string& item : list.items()) widget->addItem(shown_name(item));
    widget->setCurrentRow(list.selected ? static_cast<int>(*list.selected) : -1);
}

}  // namespace

PicturesWindowView::PicturesWindowView(viewer::SavPic& window, EventLoop& events)
    : View(window, new QWidget, events), w_(window) {
    name_controls(window);
    const int space = line_height();
    auto* layout = new QVBoxLayout(&frame());
    layout->setContentsMargins(space, space, space, space);
    layout->setSpacing(space / 2);
    layout->addWidget(make_lists(), 1);
    layout->addWidget(make_copy_panel(), 1);
    layout->addWidget(make_progress());
    auto* leave = new QShortcut(QKeySequence::Cancel, &frame());
    QObject::connect(leave, &QShortcut::activated, &frame(), [this] { hand_in(w_.close); });
}

QWidget* PicturesWindowView::make_lists() {
    auto* panel = new QWidget;
    bind(w_.Frame2, panel);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bind(w_.Label3, text_label()));
    auto* list = new QListWidget;
    adopt(w_.List1, list);
    QObject::connect(list, &QListWidget::currentRowChanged, list, [this](int row) {
        hand_in([this, row] {
            w_.List1.selected = row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
            controls::run(w_.List1.change);
        });
    });
    QObject::connect(list, &QListWidget::itemActivated, list, [this] { hand_in(w_.List1.double_click); });
    on_sync([this, list, revision = Drawn<std::uint64_t>()]() mutable {
        revision.update(w_.List1.revision(), [&](std::uint64_t) { show_rows(w_.List1, list); });
    });
    layout->addWidget(list, 1);
    layout->addWidget(bind(w_.Label4, text_label()));
    for (controls::Button* button : {&w_.Command6, &w_.Command7, &w_.Command8, &w_.Command5, &w_.Command9}) {
        layout->addWidget(bind(*button, push_button()));
    }
    return panel;
}

QWidget* PicturesWindowView::make_copy_panel() {
    auto* panel = new QWidget;
    bind(w_.Picture1, panel);
    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bind(w_.Drive1, new DriveBox), 0, 0);
    layout->addWidget(bind(w_.Dir1, new DirectoryList), 1, 0);
    auto* files = new QListWidget;
    adopt(w_.File1, files);
    files->setSelectionMode(QAbstractItemView::NoSelection);
    on_sync([this, files, revision = Drawn<std::uint64_t>()]() mutable {
        revision.update(w_.File1.revision(), [&](std::uint64_t) { show_rows(w_.File1, files); });
    });
    layout->addWidget(files, 0, 1, 2, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(bind(w_.Command10, push_button()));
    buttons->addStretch(1);
    buttons->addWidget(bind(w_.Command1, push_button()));
    buttons->addWidget(bind(w_.Command2, push_button()));
    layout->addLayout(buttons, 2, 0, 1, 2);
    return panel;
}

QWidget* PicturesWindowView::make_progress() {
    auto* panel = new QWidget;
    adopt(w_.Frame1, panel);
    on_sync([this, panel] { panel->setVisible(w_.Frame1.visible || w_.stop.visible); });
    const int space = line_height();
    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(space / 2);
    layout->addWidget(bind(w_.doing, text_label()), 0, 0, 1, 3);
    const auto add_bar = [&](int row, const char* what, controls::Picture& whole, controls::Picture& part,
                             controls::Label& percent) {
        auto* bar = new QProgressBar;
        bar->setTextVisible(false);
        bar->setMinimumWidth(space * 18);
        QLabel* number = plain_label();
        number->setMinimumWidth(frame().fontMetrics().horizontalAdvance(QStringLiteral("100% ")));
        QLabel* heading = plain_label(QString::fromLatin1(what));
        layout->addWidget(heading, row, 0);
        layout->addWidget(bind(whole, part, bar), row, 1);
        layout->addWidget(bind(percent, number), row, 2);
        on_sync([&whole, heading, bar, number] {
            for (QWidget* widget : std::initializer_list<QWidget*>{heading, bar, number}) {
                widget->setVisible(whole.visible);
            }
        });
    };
    add_bar(1, "All files", w_.Picture5, w_.Picture6, w_.Label2);
    add_bar(2, "This file", w_.Picture3, w_.Picture2, w_.Label5);
    layout->addWidget(bind_stop(w_.stop, push_button()), 3, 0, 1, 3, Qt::AlignRight);
    return panel;
}

void PicturesWindowView::on_shown() {
    if (w_.Frame2.visible) frame().findChild<QWidget*>(QStringLiteral("List1"))->setFocus();
}

}  // namespace quill::desktop
