#include "desktop/row_table.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <optional>
#include <vector>

namespace quill::desktop {

RowTable::RowTable(controls::ListBox& list, QString text_when_empty)
    : list_(list), text_when_empty_(std::move(text_when_empty)) {
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionBehavior(SelectRows);
    setSelectionMode(list.takes_several ? ExtendedSelection : SingleSelection);
    setTextElideMode(Qt::ElideMiddle);
}

void RowTable::show_rows(QAbstractItemModel& rows) {
    setModel(&rows);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::Interactive);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    QObject::connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { take_selection(); });
    QObject::connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { take_selection(); });
    QObject::connect(&rows, &QAbstractItemModel::modelAboutToBeReset, this, [this] { syncing_ = true; });
    QObject::connect(&rows, &QAbstractItemModel::modelReset, this, [this] {
        show_selection();
        syncing_ = false;
    });
}

void RowTable::size_columns(std::initializer_list<std::pair<int, const char*>> widest) {
    constexpr int margins = 8;
    for (const auto& [column, text] : widest) {
        header()->resizeSection(column, fontMetrics().horizontalAdvance(QString::fromLatin1(text)) + margins);
    }
}

void RowTable::take_selection() {
    if (syncing_) return;
    std::vector<std::size_t> items;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) items.push_back(item_at(row));
    }
    std::sort(items.begin(), items.end());
    items.erase(std::unique(items.begin(), items.end()), items.end());
    std::optional<std::size_t> current;
    if (!items.empty()) {
        const int row = currentIndex().row();
        const std::size_t focused = row < 0 ? items.front() : item_at(row);
        current = std::binary_search(items.begin(), items.end(), focused) ? focused : items.front();
    }
    if (current == list_.selected && items == list_.selected_rows) return;
    list_.selected = current;
    list_.selected_rows = std::move(items);
    if (selection_changed) selection_changed();
}

/// Selects the list's selected rows, and shows the current row.
void RowTable::show_selection() {
    QItemSelection rows;
    for (const std::size_t item : list_.chosen_rows()) {
        const int row = item < list_.count() ? row_of(item) : -1;
        if (row >= 0) rows.select(model()->index(row, 0), model()->index(row, model()->columnCount() - 1));
    }
    selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    if (!list_.selected) return;
    const QModelIndex current = model()->index(row_of(*list_.selected), 0);
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    if (current.isValid()) scrollTo(current);
}

void RowTable::sync() {
    refresh_rows();
    const int row = list_.selected && *list_.selected < list_.count() ? row_of(*list_.selected) : -1;
    const bool as_drawn = row < 0 ? !selectionModel()->hasSelection() : selectionModel()->isRowSelected(row);
    if (as_drawn) return;
    syncing_ = true;
    show_selection();
    syncing_ = false;
}

void RowTable::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (model()->rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(palette().placeholderText().color());
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, text_when_empty_);
}

void RowTable::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && acted) {
        acted();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void RowTable::mouseDoubleClickEvent(QMouseEvent* event) {
    const bool on_row = indexAt(event->position().toPoint()).isValid();
    if (event->button() == Qt::LeftButton && on_row && acted) acted();
}

}  // namespace quill::desktop
