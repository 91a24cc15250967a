#include "desktop/archive_table.h"

#include "desktop/shown_text.h"
#include "zip/archive_actions.h"

#include <QApplication>
#include <QDrag>
#include <QHeaderView>
#include <QMimeData>
#include <QScrollBar>

#include <algorithm>

namespace quill::desktop {

ArchiveTable::ArchiveTable(zip::arcview& window)
    : RowTable(window.List1, QStringLiteral("This archive is empty.\nDrag files here to add them.")),
      window_(window),
      model_(window) {
    show_rows(model_);
    setDragEnabled(true);
    setDragDropMode(DragOnly);
    const int line = fontMetrics().height();
    setIconSize(QSize(line, line));
    header()->setSortIndicatorClearable(true);
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    size_columns({{ArchiveModel::size_column, "1,000.0 MB  "},
                  {ArchiveModel::packed_column, "1,000.0 MB  "},
                  {ArchiveModel::method_column, "deflated, locked  "},
                  {ArchiveModel::date_column, "2026-12-28 20:28   "},
                  {ArchiveModel::condition_column, "WW Refused: its compressed data are broken  "}});
    QObject::connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { report_scrolling(); });
}

void ArchiveTable::make_narrow(bool narrow) {
    narrow_ = narrow;
    fit_columns();
}

void ArchiveTable::resizeEvent(QResizeEvent* event) {
    RowTable::resizeEvent(event);
    fit_columns();
}

/// Hides columns that matter less until the names have room.
void ArchiveTable::fit_columns() {
    constexpr int characters_of_name = 26;
    int room = viewport()->width() - fontMetrics().averageCharWidth() * characters_of_name;
    for (int column = ArchiveModel::size_column; column < ArchiveModel::column_count; ++column) {
        int& width = widths_.at(static_cast<std::size_t>(column));
        if (!isColumnHidden(column)) width = columnWidth(column);
        room -= width;
    }
    for (const int column : {ArchiveModel::packed_column, ArchiveModel::method_column, ArchiveModel::date_column}) {
        const bool hidden = narrow_ || room < 0;
        if (hidden) room += widths_.at(static_cast<std::size_t>(column));
        if (isColumnHidden(column) != hidden) setColumnHidden(column, hidden);
    }
}

void ArchiveTable::report_scrolling() {
    const QModelIndex top = indexAt(QPoint(0, 0));
    if (scrolled && top.isValid() && model_.in_archive_order()) scrolled(model_.member_at(top.row()));
}

void ArchiveTable::keyboardSearch(const QString& search) {
    const bool goes_on = since_typed_.isValid() && since_typed_.elapsed() < QApplication::keyboardInputInterval();
    const bool same_letter = goes_on && !typed_.isEmpty() && typed_ == search;  // repeated: the next such name
    typed_ = goes_on && !same_letter ? typed_ + search : search;
    since_typed_.start();
    if (model_.rowCount() == 0) return;
    const int current = std::max(0, currentIndex().row());
    const int from = typed_.size() > 1 ? current : current + 1;
    const int row = model_.find(typed(typed_.toLower()), from % model_.rowCount());
    if (row >= 0) setCurrentIndex(model_.index(row, 0));
}

/// Passes the selected members on as files, by their paths, which every program understands.
void ArchiveTable::startDrag(Qt::DropActions) {
    const zip::Handed handed = zip::files_to_hand_out(window_);
    const auto report = [&] {
        if (left_out && !handed.without_file.empty()) left_out(handed.without_file);
    };
    if (handed.paths.empty()) return report();
    QList<QUrl> files;
    for (const std::string& path : handed.paths) files.append(file_url(path));
    auto* urls = new QMimeData;
    urls->setUrls(files);
    auto* drag = new QDrag(this);
    drag->setMimeData(urls);
    drag->setPixmap(
        model_.data(currentIndex().siblingAtColumn(0), Qt::DecorationRole).value<QIcon>().pixmap(iconSize()));
    if (drag->exec(Qt::CopyAction) != Qt::IgnoreAction) report();
}

}  // namespace quill::desktop
