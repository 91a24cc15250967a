#pragma once

#include "desktop/signs.h"
#include "zip/archive_rows.h"
#include "zip/archive_window.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>

#include <cstddef>
#include <string_view>
#include <vector>

namespace quill::desktop {

/// All rows of the archive window in sorted order. The contents of a row are read when it is drawn, so that a long list
/// costs nothing.
class ArchiveModel final : public QAbstractTableModel {
  public:
    enum Column { name_column, size_column, packed_column, method_column, date_column, condition_column, column_count };

    explicit ArchiveModel(zip::arcview& window) : window_(window) {}

    /// Reads the rows again if they have changed. Returns true if their places have changed.
    bool refresh();

    std::size_t member_at(int row) const { return order_.at(static_cast<std::size_t>(row)); }
    int row_of(std::size_t member) const;
    bool in_archive_order() const { return sorted_by_ < 0; }

    /// Returns the first row at or after `from`, wrapping around, whose name begins with `text`, which is in lower
    /// case; -1 for none. Compares the name with and without its directories.
    int find(std::string_view text, int from) const;

    std::size_t rows_read() const { return rows_read_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Sorts by `column`; a negative one restores the archive's order.
    void sort(int column, Qt::SortOrder order) override;

  private:
    void arrange();
    QIcon icon_of(const zip::RowDetails& details) const;
    QIcon icon_of(zip::RowCondition condition) const;

    zip::arcview& window_;
    std::uint64_t rows_revision_ = ~std::uint64_t{0};
    std::uint64_t shown_revision_ = ~std::uint64_t{0};
    int sorted_by_ = -1;
    Qt::SortOrder sort_order_ = Qt::AscendingOrder;
    std::vector<std::size_t> order_;  ///< member by row
    std::vector<int> places_;         ///< row by member
    mutable std::size_t rows_read_ = 0;
    mutable Signs signs_;
    mutable QHash<QString, QString> theme_names_;  ///< of icons, by name ending
};

}  // namespace quill::desktop
