#pragma once

#include "controls/control.h"
#include "desktop/row_table.h"
#include "desktop/signs.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

namespace quill::desktop {

/// The rows of a file list with their sizes and dates, which are read when a row is first shown.
class FileTableModel final : public QAbstractTableModel {
  public:
    enum Column { name_column, size_column, date_column, column_count };

    explicit FileTableModel(const controls::FileListBox& list) : list_(list) {}

    /// Reads the rows again if they have changed. Returns true if they have.
    bool refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    struct Details {
        QString size, date, icon;
    };
    const Details& details(std::size_t row) const;

    const controls::FileListBox& list_;
    std::uint64_t revision_ = ~std::uint64_t{0};
    mutable std::vector<std::optional<Details>> details_;
    mutable Signs signs_;
};

/// A table of files. Typing moves to the first name with that beginning.
class FileTable final : public RowTable {
  public:
    explicit FileTable(controls::FileListBox& list);

  protected:
    void refresh_rows() override { model_.refresh(); }

  private:
    FileTableModel model_;
};

}  // namespace quill::desktop
