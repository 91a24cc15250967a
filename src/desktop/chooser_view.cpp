#include "desktop/chooser_view.h"

#include "desktop/directory_list.h"
#include "desktop/file_table.h"
#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "files/path.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

namespace quill::desktop {
namespace {

enum Page { files_page, recent_page, merge_page };

// The position of a press on each tab in the picture of tabs: in twips from its left.
constexpr int press_on_recent = 0;
constexpr int press_on_merge = 2475;

/// Gives the directories and the parts on the right the width they need; the files get the rest.
void share_width(QSplitter* columns) {
    constexpr int characters[] = {28, 62, 30};
    QList<int> sizes;
    for (const int n : characters) sizes.append(n * columns->fontMetrics().averageCharWidth());
    columns->setSizes(sizes);
    columns->setStretchFactor(0, 0);
    columns->setStretchFactor(1, 1);
    columns->setStretchFactor(2, 0);
}

template <class Layout>
Layout* plain_layout(QWidget* area) {
    auto* layout = new Layout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(area->fontMetrics().height() / 2);
    return layout;
}

}  // namespace

ChooserView::ChooserView(encoder::cmdg& window, EventLoop& events) : View(window, new QWidget, events), w_(window) {
    name_controls(window);
    const int space = frame().fontMetrics().height();
    auto* layout = new QVBoxLayout(&frame());
    layout->setContentsMargins(space, space, space, space);
    layout->setSpacing(space / 2);

    auto* pages = new QStackedWidget;
    layout->addWidget(make_tabs(), 0, Qt::AlignLeft);
    layout->addWidget(pages, 1);
    pages->addWidget(make_file_page());
    pages->addWidget(make_recent_page());
    pages->addWidget(make_merge_page());
    on_sync([this, pages] { pages->setCurrentIndex(page_shown()); });
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), &frame());
    QObject::connect(escape, &QShortcut::activated, &frame(), [this] {
        const controls::Button* const cancels[] = {&w_.Command2, &w_.Command11, &w_.Command13};
        hand_in(cancels[page_shown()]->click);
    });
}

int ChooserView::page_shown() const {
    if (!w_.Picture2.visible) return files_page;
    return w_.Picture3.visible ? merge_page : recent_page;
}

void ChooserView::on_shown() {
    frame().resize(told_size());
    files_->setFocus();
}

QTabBar* ChooserView::make_tabs() {
    auto* tabs = new QTabBar;
    adopt(w_.Image1, tabs);
    tabs->setAccessibleName(QStringLiteral("Pages of this window"));
    tabs->addTab(QStringLiteral("&Files"));
    tabs->addTab(QStringLiteral("&Recent directories"));
    tabs->addTab(QStringLiteral("&Merge parts"));
    tabs->setExpanding(false);
    QObject::connect(tabs, &QTabBar::currentChanged, tabs, [this, tabs](int tab) {
        hand_in([this, tab] {
            if (tab == files_page) {
                controls::run(w_.Image2.click);
            } else {
                w_.Image1.press(tab == merge_page ? press_on_merge : press_on_recent);
            }
        });
        // The arrow keys move from tab to tab; any other way to a page leads to its list.
        if (tabs->hasFocus()) return;
        QWidget* const lists[] = {files_, recent_, parts_};
        lists[tab]->setFocus();
    });
    on_sync([this, tabs] {
        tabs->setVisible(w_.Image1.enabled);
        const QSignalBlocker quiet(tabs);
        tabs->setCurrentIndex(page_shown());
    });
    return tabs;
}

QWidget* ChooserView::make_path_line() {
    auto* area = new QWidget;
    auto* layout = plain_layout<QHBoxLayout>(area);
    auto* path = new QLineEdit;
    bind(w_.Text1, path);
    path->setToolTip(QStringLiteral("Type a directory or a file and press Enter (Ctrl+L)"));
    auto* to_path = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_L), &frame());
    QObject::connect(to_path, &QShortcut::activated, path, [path] {
        path->setFocus();
        path->selectAll();
    });
    auto* up = new QShortcut(QKeySequence(Qt::ALT | Qt::Key_Up), &frame());
    QObject::connect(up, &QShortcut::activated, path, [this] {
        hand_in([this] {
            w_.Text1.text = files::dir_of(w_.Dir1.path);
            controls::run(w_.go.click);
        });
    });
    auto* go = new QPushButton;
    bind(w_.go, go);
    QObject::connect(path, &QLineEdit::returnPressed, path, [this] {
        hand_in(w_.go.click);
        files_->setFocus();
    });
    layout->addWidget(path, 1);
    layout->addWidget(go);
    return area;
}

QWidget* ChooserView::make_directory_column(controls::DriveListBox& drive, controls::DirListBox& directory) {
    auto* area = new QWidget;
    auto* layout = plain_layout<QVBoxLayout>(area);
    layout->addWidget(bind(drive, new DriveBox));
    auto* list = bind(directory, new DirectoryList);
    list->setMinimumWidth(area->fontMetrics().averageCharWidth() * 22);
    layout->addWidget(list, 1);
    return area;
}

QWidget* ChooserView::make_file_page() {
    auto* page = new QWidget;
    auto* layout = plain_layout<QVBoxLayout>(page);
    layout->addWidget(make_path_line());
    auto* columns = new QSplitter(Qt::Horizontal);
    columns->setChildrenCollapsible(false);
    columns->setHandleWidth(page->fontMetrics().height() / 2);
    files_ = bind_files(w_.File1);
    files_->acted = [this] { hand_in(w_.File1.double_click); };
    columns->addWidget(make_directory_column(w_.Drive1, w_.Dir1));
    columns->addWidget(files_);
    columns->addWidget(make_favorites());
    share_width(columns);
    layout->addWidget(columns, 1);
    layout->addWidget(make_collected());
    layout->addWidget(make_file_buttons());
    return page;
}

QWidget* ChooserView::make_favorites() {
    auto* area = new QWidget;
    bind(w_.Picture1, area);
    auto* layout = plain_layout<QVBoxLayout>(area);
    layout->addWidget(bind(w_.Label2, text_label()));
    auto* list = bind_list(w_.List5, new QListWidget);
    list->setMinimumWidth(area->fontMetrics().averageCharWidth() * 22);
    layout->addWidget(list, 1);
    auto* add = new QPushButton;
    bind(w_.Label3, static_cast<QWidget*>(add));
    QObject::connect(add, &QPushButton::clicked, add, [this] { hand_in(w_.Label3.click); });
    on_sync([this, add] { add->setText(shown(w_.Label3.text)); });
    layout->addWidget(add);
    return area;
}

QWidget* ChooserView::make_collected() {
    auto* area = new QWidget;
    auto* layout = plain_layout<QHBoxLayout>(area);
    auto* chosen = plain_layout<QVBoxLayout>(new QWidget);
    chosen->addWidget(bind(w_.Label1, text_label()));
    chosen->addWidget(bind_list(w_.List2, new QListWidget));
    layout->addWidget(chosen->parentWidget(), 1);
    for (auto [list, button] : {std::pair{&w_.List3, &w_.Command3}, {&w_.List4, &w_.Command4}}) {
        auto* column = plain_layout<QVBoxLayout>(new QWidget);
        column->addWidget(bind_list(*list, new QListWidget));
        column->addWidget(bind(*button, new QPushButton));
        layout->addWidget(column->parentWidget(), 1);
    }
    auto* buttons = plain_layout<QVBoxLayout>(new QWidget);
    buttons->addWidget(bind(w_.Command5, new QPushButton));
    buttons->addWidget(bind(w_.Command6, new QPushButton));
    buttons->addStretch(1);
    buttons->addWidget(bind(w_.doing, text_label()));
    QProgressBar* const bar = bind(w_.bar, w_.bar_done, new QProgressBar);
    on_sync([this, bar] { bar->setVisible(w_.bar.visible); });
    buttons->addWidget(bar);
    buttons->addWidget(bind_stop(w_.stop, new QPushButton));
    layout->addWidget(buttons->parentWidget());
    area->setMaximumHeight(area->fontMetrics().height() * 10);
    on_sync([this, area] { area->setVisible(w_.List2.visible); });
    return area;
}

QWidget* ChooserView::make_file_buttons() {
    auto* area = new QWidget;
    auto* layout = plain_layout<QHBoxLayout>(area);
    layout->addWidget(bind(w_.hidden_files, new QCheckBox));
    const std::vector<controls::Choice*> patterns = {&w_.Option1, &w_.Option2};
    for (controls::Choice* choice : patterns) layout->addWidget(bind(*choice, new QRadioButton, patterns));
    layout->addStretch(1);
    auto* select = new QPushButton;
    select->setDefault(true);
    layout->addWidget(bind(w_.Command1, select));
    layout->addWidget(bind(w_.Command2, new QPushButton));
    return area;
}

QWidget* ChooserView::make_recent_page() {
    auto* page = new QWidget;
    adopt(w_.Picture2, page);
    auto* layout = plain_layout<QVBoxLayout>(page);
    layout->addWidget(bind(w_.Label5, text_label()));
    recent_ = bind_list(w_.List9, new QListWidget);
    layout->addWidget(recent_, 1);
    auto* buttons = plain_layout<QHBoxLayout>(new QWidget);
    auto* clear = new QPushButton;
    adopt(w_.Option3, clear);
    QObject::connect(clear, &QPushButton::clicked, clear, [this] { hand_in(w_.Option3.click); });
    on_sync([this, clear] {
        clear->setText(shown(w_.Option3.caption));
        clear->setEnabled(w_.Option3.enabled);
    });
    buttons->addWidget(clear);
    buttons->addStretch(1);
    buttons->addWidget(bind(w_.Image2, new QPushButton));
    buttons->addWidget(bind(w_.Command11, new QPushButton));
    layout->addWidget(buttons->parentWidget());
    return page;
}

QWidget* ChooserView::make_merge_page() {
    auto* page = new QWidget;
    adopt(w_.Picture3, page);
    auto* layout = plain_layout<QVBoxLayout>(page);
    auto* columns = new QSplitter(Qt::Horizontal);
    columns->setChildrenCollapsible(false);
    columns->setHandleWidth(page->fontMetrics().height() / 2);
    parts_ = bind_files(w_.File2);
    parts_->acted = [this] { hand_in(w_.File2.double_click); };
    columns->addWidget(make_directory_column(w_.Drive2, w_.Dir2));
    columns->addWidget(parts_);
    columns->addWidget(make_merge_list());
    share_width(columns);
    layout->addWidget(columns, 1);

    auto* buttons = plain_layout<QHBoxLayout>(new QWidget);
    buttons->addWidget(bind(w_.Command12, new QPushButton));
    buttons->addStretch(1);
    buttons->addWidget(bind(w_.Command13, new QPushButton));
    layout->addWidget(buttons->parentWidget());
    return page;
}

QWidget* ChooserView::make_merge_list() {
    auto* area = new QWidget;
    auto* layout = plain_layout<QVBoxLayout>(area);
    layout->addWidget(bind(w_.Label6, text_label()));
    layout->addWidget(bind_list(w_.List7, new QListWidget), 1);
    for (controls::Button* button : {&w_.Command7, &w_.Command9, &w_.Command10, &w_.Command8}) {
        layout->addWidget(bind(*button, new QPushButton));
    }
    return area;
}

QListWidget* ChooserView::bind_list(controls::ListBox& list, QListWidget* widget) {
    adopt(list, widget);
    widget->setTextElideMode(Qt::ElideMiddle);
    widget->setAlternatingRowColors(true);
    const auto go = [this, &list, widget] {
        const int row = widget->currentRow();
        if (row < 0) return;
        list.selected = static_cast<std::size_t>(row);
        hand_in(list.change ? list.change : [] {});
    };
    QObject::connect(widget, &QListWidget::itemClicked, widget, go);
    QObject::connect(widget, &QListWidget::itemActivated, widget, go);
    on_sync([&list, widget, revision = Drawn<std::uint64_t>()]() mutable {
        revision.update(list.revision(), [&](std::uint64_t) {
            widget->clear();
            for (const std::string& item : list.items()) widget->addItem(shown_name(item));
        });
        widget->setEnabled(list.enabled);
    });
    return widget;
}

FileTable* ChooserView::bind_files(controls::FileListBox& list) {
    auto* table = new FileTable(list);
    adopt(list, table);
    table->selection_changed = [this, &list] { hand_in(list.change ? list.change : [] {}); };
    on_sync([table] { table->sync(); });
    return table;
}

}  // namespace quill::desktop
