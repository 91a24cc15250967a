#include "desktop/order_list.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>

#include <algorithm>

namespace quill::desktop {

OrderList::OrderList() {
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDefaultDropAction(Qt::CopyAction);
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAlternatingRowColors(true);
}

std::vector<std::size_t> OrderList::selected_rows() const {
    std::vector<std::size_t> rows;
    for (int row = 0; row < count(); ++row) {
        if (item(row)->isSelected()) rows.push_back(static_cast<std::size_t>(row));
    }
    return rows;
}

bool OrderList::takes(const QDropEvent& event) const {
    if (event.source() == this) return moved != nullptr;
    return dropped && qobject_cast<QListWidget*>(event.source()) != nullptr;
}

void OrderList::dragEnterEvent(QDragEnterEvent* event) {
    takes(*event) ? event->acceptProposedAction() : event->ignore();
}

void OrderList::dragMoveEvent(QDragMoveEvent* event) {
    takes(*event) ? event->acceptProposedAction() : event->ignore();
}

std::size_t OrderList::row_at(const QDropEvent& event) const {
    const QModelIndex index = indexAt(event.position().toPoint());
    return static_cast<std::size_t>(index.isValid() ? index.row() : std::max(0, count() - 1));
}

void OrderList::dropEvent(QDropEvent* event) {
    if (!takes(*event)) return event->ignore();
    event->setDropAction(Qt::CopyAction);  // the rows keep their places until the window has new ones
    event->accept();
    if (event->source() != this) {
        const auto* const from = dynamic_cast<const OrderList*>(event->source());
        if (from != nullptr) dropped(from->selected_rows());
    } else if (currentRow() >= 0) {
        moved(static_cast<std::size_t>(currentRow()), row_at(*event));
    }
}

void OrderList::keyPressEvent(QKeyEvent* event) {
    const int by = event->key() == Qt::Key_Up ? -1 : event->key() == Qt::Key_Down ? 1 : 0;
    const int to = currentRow() + by;
    if (moved && by != 0 && event->modifiers().testFlag(Qt::AltModifier)) {
        if (currentRow() >= 0 && to >= 0 && to < count())
            moved(static_cast<std::size_t>(currentRow()), static_cast<std::size_t>(to));
        return;
    }
    QListWidget::keyPressEvent(event);
}

}  // namespace quill::desktop
