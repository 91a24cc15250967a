#pragma once

#include "decoder/results_panel.h"
#include "shell/main_window.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <vector>

namespace quill::desktop {

/// The rows of the results list with what is known of their files.
class ResultsModel final : public QAbstractTableModel {
  public:
    enum Column { name_column, size_column, verdict_column, column_count };

    explicit ResultsModel(const shell::swit& window) : window_(window) {}

    /// Takes the rows anew where they have changed, or where `always`. Returns whether it did.
    bool refresh(bool always = false);

    struct Row {
        decoder::ResultRow result;
        decoder::RowDetails details;
        QIcon icon;
    };

    const Row& at(std::size_t row) const { return rows_.at(row); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    const shell::swit& window_;
    std::uint64_t revision_ = 0;
    std::vector<Row> rows_;
};

/// What is known of the file, in a few words: "Damaged".
QString verdict_text(const ResultsModel::Row& row);

/// The same at length, with the problems found.
QString verdict_reasons(const ResultsModel::Row& row);

}  // namespace quill::desktop
