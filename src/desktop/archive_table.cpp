#include "desktop/archive_table.h"

#include "desktop/shown_text.h"
#include "zip/archive_actions.h"

#include <QApplication>
#include <QDrag>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace quill::desktop {

ArchiveTable::ArchiveTable(zip::arcview& window) : window_(window), model_(window) {
    setModel(&model_);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setTextElideMode(Qt::ElideMiddle);
    setDragEnabled(true);
    setDragDropMode(DragOnly);
    const int line = fontMetrics().height();
    setIconSize(QSize(line, line));
    header()->setSortIndicatorClearable(true);
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    size_columns();
    QObject::connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { take_selection(); });
    QObject::connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { take_selection(); });
    QObject::connect(&model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] { syncing_ = true; });
    QObject::connect(&model_, &QAbstractItemModel::modelReset, this, [this] {
        show_selection();
        syncing_ = false;
    });
    QObject::connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { report_scrolling(); });
}

void ArchiveTable::size_columns() {
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::Interactive);
    header()->setSectionResizeMode(ArchiveModel::name_column, QHeaderView::Stretch);
    const std::pair<int, const char*> widest[] = {{ArchiveModel::size_column, "1,000.0 MB  "},
                                                  {ArchiveModel::packed_column, "1,000.0 MB  "},
                                                  {ArchiveModel::method_column, "deflated, locked  "},
                                                  {ArchiveModel::date_column, "2026-12-28 20:28   "},
                                                  {ArchiveModel::condition_column, "WW Needs a password  "}};
    for (const auto& [column, text] : widest) {
        header()->resizeSection(column, fontMetrics().horizontalAdvance(QString::fromLatin1(text)) + 8);
    }
}

void ArchiveTable::take_selection() {
    if (syncing_) return;
    std::vector<std::size_t> members;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) members.push_back(model_.member_at(row));
    }
    std::sort(members.begin(), members.end());
    members.erase(std::unique(members.begin(), members.end()), members.end());
    std::optional<std::size_t> current;
    if (!members.empty()) {
        const int row = currentIndex().row();
        const std::size_t focused = row < 0 ? members.front() : model_.member_at(row);
        current = std::binary_search(members.begin(), members.end(), focused) ? focused : members.front();
    }
    if (current == window_.List1.selected && members == window_.List1.selected_rows) return;
    window_.List1.selected = current;
    window_.List1.selected_rows = std::move(members);
    if (selection_changed) selection_changed();
}

/// Selects what the window's list has selected, and shows the current row.
void ArchiveTable::show_selection() {
    QItemSelection rows;
    for (const std::size_t member : window_.List1.chosen_rows()) {
        const int row = model_.row_of(member);
        if (row >= 0) rows.select(model_.index(row, 0), model_.index(row, ArchiveModel::column_count - 1));
    }
    selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    if (!window_.List1.selected) return;
    const QModelIndex current = model_.index(model_.row_of(*window_.List1.selected), 0);
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    if (current.isValid()) scrollTo(current);
}

void ArchiveTable::sync() {
    model_.refresh();
    const auto& selected = window_.List1.selected;
    const int row = selected ? model_.row_of(*selected) : -1;
    const bool as_drawn = row < 0 ? !selectionModel()->hasSelection() : selectionModel()->isRowSelected(row);
    if (as_drawn) return;
    syncing_ = true;
    show_selection();
    syncing_ = false;
}

void ArchiveTable::report_scrolling() {
    const QModelIndex top = indexAt(QPoint(0, 0));
    if (scrolled && top.isValid() && model_.in_archive_order()) scrolled(model_.member_at(top.row()));
}

void ArchiveTable::keyboardSearch(const QString& search) {
    const bool goes_on = since_typed_.isValid() && since_typed_.elapsed() < QApplication::keyboardInputInterval();
    const bool same_letter = goes_on && !typed_.isEmpty() && typed_ == search;  // again: the next such name
    typed_ = goes_on && !same_letter ? typed_ + search : search;
    since_typed_.start();
    if (model_.rowCount() == 0) return;
    const int current = std::max(0, currentIndex().row());
    const int from = typed_.size() > 1 ? current : current + 1;
    const int row = model_.find(typed(typed_.toLower()), from % model_.rowCount());
    if (row >= 0) setCurrentIndex(model_.index(row, 0));
}

void ArchiveTable::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (model_.rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(palette().placeholderText().color());
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                     QStringLiteral("This archive is empty.\nDrag files here to add them."));
}

void ArchiveTable::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && acted) {
        acted();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void ArchiveTable::mouseDoubleClickEvent(QMouseEvent* event) {
    const bool on_row = indexAt(event->position().toPoint()).isValid();
    if (event->button() == Qt::LeftButton && on_row && acted) acted();
}

/// Hands the selected members out as files, by their paths, which every program understands.
void ArchiveTable::startDrag(Qt::DropActions) {
    QList<QUrl> files;
    for (const std::string& path : zip::files_to_drag(window_)) files.append(file_url(path));
    if (files.isEmpty()) return;
    auto* urls = new QMimeData;
    urls->setUrls(files);
    auto* drag = new QDrag(this);
    drag->setMimeData(urls);
    drag->setPixmap(
        model_.data(currentIndex().siblingAtColumn(0), Qt::DecorationRole).value<QIcon>().pixmap(iconSize()));
    drag->exec(Qt::CopyAction);
}

}  // namespace quill::desktop
