#include "desktop/file_table.h"

#include "desktop/shown_text.h"
#include "files/path.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeDatabase>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace quill::desktop {
namespace {

/// Returns the name of the icon of a file's type, by its name alone: a long list must not open every file.
QString icon_name(const QString& name) {
    return QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension).iconName();
}

}  // namespace

bool FileTableModel::refresh() {
    if (revision_ == list_.revision()) return false;
    beginResetModel();
    revision_ = list_.revision();
    details_.assign(list_.count(), std::nullopt);
    endResetModel();
    return true;
}

int FileTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(details_.size());
}

int FileTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : column_count;
}

const FileTableModel::Details& FileTableModel::details(std::size_t row) const {
    std::optional<Details>& known = details_.at(row);
    if (!known) {
        const std::string& name = list_.items().at(row);
        const QFileInfo file(QFile::decodeName(QByteArray::fromStdString(files::join(list_.directory(), name))));
        const QString date = file.lastModified().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
        known = Details{shown_size(static_cast<std::uint64_t>(file.size())), date, icon_name(shown_name(name))};
    }
    return *known;
}

QVariant FileTableModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= list_.count() || row >= details_.size()) return {};
    if (role == Qt::DisplayRole) {
        if (index.column() == name_column) return shown_name(list_.items()[row]);
        return index.column() == size_column ? details(row).size : details(row).date;
    }
    if (role == Qt::DecorationRole && index.column() == name_column) {
        return signs_.of_type(details(row).icon, shown_name(list_.items()[row]));
    }
    if (role == Qt::ToolTipRole && index.column() == name_column) return tool_tip(shown_name(list_.items()[row]));
    if (role == Qt::TextAlignmentRole && index.column() == size_column)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant FileTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    switch (section) {
        case name_column:
            return QStringLiteral("Name");
        case size_column:
            return QStringLiteral("Size");
        default:
            return QStringLiteral("Changed");
    }
}

FileTable::FileTable(controls::FileListBox& list) : list_(list), model_(list) {
    setModel(&model_);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSelectionBehavior(SelectRows);
    setSelectionMode(list.takes_several ? ExtendedSelection : SingleSelection);
    setTextElideMode(Qt::ElideMiddle);
    setMinimumWidth(fontMetrics().averageCharWidth() * 44);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(FileTableModel::name_column, QHeaderView::Stretch);
    header()->setSectionResizeMode(FileTableModel::size_column, QHeaderView::Interactive);
    header()->setSectionResizeMode(FileTableModel::date_column, QHeaderView::Interactive);
    header()->resizeSection(FileTableModel::size_column,
                            fontMetrics().horizontalAdvance(QStringLiteral("1,000.0 MB  ")));
    header()->resizeSection(FileTableModel::date_column,
                            fontMetrics().horizontalAdvance(QStringLiteral("2026-12-28 20:28   ")));
    QObject::connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { take_selection(); });
    QObject::connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { take_selection(); });
}

void FileTable::take_selection() {
    if (syncing_) return;
    std::vector<std::size_t> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.push_back(static_cast<std::size_t>(index.row()));
    std::sort(rows.begin(), rows.end());
    std::optional<std::size_t> current;
    if (!rows.empty()) {
        const auto focused = static_cast<std::size_t>(currentIndex().row());
        current = std::binary_search(rows.begin(), rows.end(), focused) ? focused : rows.front();
    }
    if (current == list_.selected && rows == list_.selected_rows) return;
    list_.selected = current;
    list_.selected_rows = std::move(rows);
    if (selection_changed) selection_changed();
}

void FileTable::sync() {
    syncing_ = true;
    model_.refresh();
    const int row = list_.selected && *list_.selected < list_.count() ? static_cast<int>(*list_.selected) : -1;
    if (row < 0) {
        selectionModel()->clearSelection();
    } else if (!selectionModel()->isRowSelected(row)) {
        setCurrentIndex(model_.index(row, 0));
    }
    syncing_ = false;
}

void FileTable::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (model_.rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(palette().placeholderText().color());
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                     QStringLiteral("No files here.\nThe list of directories at the left leads to others."));
}

void FileTable::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && acted) {
        acted();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void FileTable::mouseDoubleClickEvent(QMouseEvent* event) {
    const bool on_row = indexAt(event->position().toPoint()).isValid();
    if (event->button() == Qt::LeftButton && on_row && acted) acted();
}

}  // namespace quill::desktop
