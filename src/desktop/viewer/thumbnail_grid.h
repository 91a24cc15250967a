#pragma once

#include "viewer/thumbnail_column.h"

#include <QAbstractListModel>
#include <QListView>
#include <QStyledItemDelegate>

#include <functional>

namespace quill::desktop {

/// The rows of the list that feeds the column's cells.
class ThumbnailModel final : public QAbstractListModel {
  public:
    explicit ThumbnailModel(viewer::tittwo& column) : w_(column) {}

    /// Reads the current list. Returns true if it has changed.
    bool refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    const std::string& path(int row) const;

    /// Reports that the row's picture has arrived.
    void announce(const std::string& path, int first, int last);

  private:
    viewer::tittwo& w_;
    const controls::ListBox* list_ = nullptr;
    std::uint64_t revision_ = 0;
    int rows_ = 0;
};

/// Draws a cell: the thumbnail, or its substitute, above the file's name.
class ThumbnailDelegate final : public QStyledItemDelegate {
  public:
    ThumbnailDelegate(const viewer::tittwo& column, const ThumbnailModel& model) : w_(column), model_(model) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  private:
    const viewer::tittwo& w_;
    const ThumbnailModel& model_;
};

/// All rows of the column's list, as many side by side as its width allows.
class ThumbnailGrid final : public QListView {
  public:
    explicit ThumbnailGrid(viewer::tittwo& column);

    void sync();

    std::function<void(std::size_t row)> opened;
    std::function<void(std::size_t row, QPoint at)> menu_wanted;  ///< at a point of the screen
    std::function<void(std::size_t row)> delete_wanted;
    std::function<void(std::size_t first, std::size_t count)> looked_at;

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    struct Rows {
        int first = 0, count = 0;
    };
    Rows in_sight() const;
    void look();

    viewer::tittwo& w_;
    ThumbnailModel model_;
    ThumbnailDelegate delegate_;
    bool double_clicked_ = false;
    std::optional<std::size_t> top_;  ///< the row that the program has moved to the top
};

}  // namespace quill::desktop
