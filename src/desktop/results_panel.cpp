#include "desktop/main_window_view.h"
#include "desktop/picture_preview.h"
#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "files/path.h"

#include <QAction>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QSignalBlocker>
#include <QTreeView>
#include <QVBoxLayout>

/// The results panel: the decoded files and the actions on them.
namespace quill::desktop {
namespace {

/// A list in which Enter opens, like a double click. Its columns are as wide as the rows shown so far need: each row
/// costs a look at its file.
class ResultsList final : public QTreeView {
  public:
    std::function<void()> opened;

    void doItemsLayout() override {
        QTreeView::doItemsLayout();
        fit_columns();
    }

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            if (opened) opened();
            return;
        }
        QTreeView::keyPressEvent(event);
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid() && opened) opened();
    }
    void scrollContentsBy(int across, int down) override {
        QTreeView::scrollContentsBy(across, down);
        if (down != 0) fit_columns();
    }
    void resizeEvent(QResizeEvent* event) override {
        QTreeView::resizeEvent(event);
        fit_columns();
    }

  private:
    void fit_columns() {
        for (const int column :
             {ResultsModel::size_column, ResultsModel::verdict_column, ResultsModel::source_column}) {
            const int needed = std::max(sizeHintForColumn(column), header()->sectionSizeHint(column));
            if (needed > columnWidth(column)) setColumnWidth(column, needed);
        }
    }
};

/// Returns the facts about a file and, since people look for it next, its place.
QString details_of(const ResultsModel::Row& row) {
    const QString directory = shown_name(files::dir_of(row.result.path));
    return verdict_reasons(row) + QStringLiteral("\n\nIn the directory %1").arg(directory);
}

void style_list(QTreeView* list) {
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setAlternatingRowColors(true);
    list->setSelectionBehavior(QTreeView::SelectRows);
    list->setDragDropMode(QTreeView::DragOnly);
    list->setDefaultDropAction(Qt::CopyAction);
    list->setTextElideMode(Qt::ElideMiddle);
    const int line = list->fontMetrics().height();
    list->setIconSize(QSize(line, line) * 3 / 2);
    list->header()->setStretchLastSection(false);
    list->header()->setResizeContentsPrecision(0);  // only the visible rows
    list->header()->setMinimumSectionSize(list->fontMetrics().averageCharWidth() * 4);
    list->header()->setDefaultSectionSize(list->header()->minimumSectionSize());
    list->header()->setSectionResizeMode(ResultsModel::name_column, QHeaderView::Stretch);
    list->header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

}  // namespace

QWidget* MainWindowView::make_results_panel() {
    auto* panel = new QWidget;
    adopt(w_.Picture2, panel);
    const int space = panel->fontMetrics().height();
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(space, space, space, space);
    layout->setSpacing(space * 3 / 4);

    layout->addLayout(make_results_head());
    auto* middle = new QHBoxLayout;
    middle->setSpacing(space);
    results_list_ = make_results_list();
    middle->addWidget(results_list_, 3);
    auto* beside = new QVBoxLayout;
    preview_ = new PicturePreview;
    preview_->setObjectName(QStringLiteral("preview"));
    preview_->setAccessibleName(QStringLiteral("Preview of the selected picture"));
    preview_->hide();
    QLabel* details = text_label();
    details->setObjectName(QStringLiteral("details"));
    details->setAccessibleName(QStringLiteral("What is known of the selected file"));
    details->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    details->setTextInteractionFlags(Qt::TextSelectableByMouse);
    details->setMinimumWidth(space * 11);
    beside->addWidget(preview_, 3);
    beside->addWidget(details);
    beside->addStretch(1);
    middle->addLayout(beside, 2);
    layout->addLayout(middle, 1);

    layout->addWidget(bind(w_.Label7, text_label()));
    layout->addWidget(make_results_buttons());
    return panel;
}

QLayout* MainWindowView::make_results_head() {
    auto* head = new QGridLayout;
    head->setColumnStretch(0, 1);
    head->addWidget(bind(w_.run_title, text_label(1.2, true)), 0, 0);
    head->addWidget(bind(w_.run_folder, text_label()), 1, 0);
    head->addWidget(bind(w_.decode_another, push_button()), 0, 1);
    head->addWidget(bind(w_.open_folder, push_button()), 1, 1);
    return head;
}

QTreeView* MainWindowView::make_results_list() {
    auto* list = new ResultsList;
    adopt(w_.List3, list);
    list->setModel(&results_);
    style_list(list);
    list->opened = [this] { hand_in(w_.List3.double_click); };
    bind_results(list);

    auto* open = new QAction(QStringLiteral("Open"), list);
    QObject::connect(open, &QAction::triggered, list, [this] { hand_in(w_.List3.double_click); });
    list->addAction(open);
    add_row_action(list, w_.Command5, QKeySequence(Qt::Key_F2));
    add_row_action(list, w_.Command7, QKeySequence::Delete);
    add_row_action(list, w_.Command8, {});
    list->setContextMenuPolicy(Qt::ActionsContextMenu);
    return list;
}

void MainWindowView::add_row_action(QTreeView* list, controls::Button& button, const QKeySequence& key) {
    auto* action = new QAction(list);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(action, &QAction::triggered, list, [this, &button] { hand_in(button.click); });
    on_sync([&button, action] {
        set_text(*action, shown(button.caption));
        action->setEnabled(button.enabled);
    });
    list->addAction(action);
}

void MainWindowView::bind_results(QTreeView* list) {
    QItemSelectionModel* selection = list->selectionModel();
    QObject::connect(selection, &QItemSelectionModel::currentRowChanged, list, [this](const QModelIndex& now) {
        const auto row = now.isValid() ? std::optional(results_.list_row(now.row())) : std::nullopt;
        if (row == w_.List3.selected) return;
        w_.List3.selected = row;
        hand_in(w_.List3.change ? w_.List3.change : [] {});
    });
    QObject::connect(&results_, &QAbstractItemModel::modelAboutToBeReset, selection,
                     [selection] { selection->blockSignals(true); });
    const auto show_selected = [this, list] {
        const auto& selected = w_.List3.selected;
        const int row = selected && *selected < w_.List3.count() ? results_.shown_row(*selected) : -1;
        if (list->currentIndex().row() != row || (row >= 0 && !list->selectionModel()->isRowSelected(row))) {
            list->setCurrentIndex(results_.index(row, 0));
        }
    };
    // Runs at once: a list that gets the focus without a current row selects its first one.
    QObject::connect(&results_, &QAbstractItemModel::modelReset, selection, [selection, show_selected] {
        selection->blockSignals(false);
        show_selected();
    });
    on_sync([this, list, show_selected, detailed = Drawn<std::optional<std::size_t>>()]() mutable {
        const bool refreshed = results_.refresh();
        show_selected();
        if (refreshed) detailed = {};
        if (refreshed) list->setColumnHidden(ResultsModel::source_column, !results_.has_several_runs());
        detailed.update(w_.List3.selected, [&](const auto& now) { show_details(now); });
    });
}

void MainWindowView::show_details(std::optional<std::size_t> row) {
    auto* details = frame().findChild<QLabel*>(QStringLiteral("details"));
    const bool known = row && *row < w_.List3.count();
    if (details != nullptr) details->setText(known ? breakable(details_of(results_.at(*row))) : QString());
    const bool picture = known && results_.at(*row).details.picture;
    preview_->show_file(picture ? results_.at(*row).result.path : std::string());
}

QWidget* MainWindowView::make_results_buttons() {
    auto* area = new QWidget;
    auto* layout = new QHBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    for (controls::Button* button : {&w_.pictures, &w_.Command5, &w_.Command7, &w_.Command8, &w_.Command6}) {
        layout->addWidget(bind(*button, push_button()));
    }
    layout->addStretch(1);
    layout->addWidget(bind(w_.Command4, push_button()));
    return area;
}

}  // namespace quill::desktop
