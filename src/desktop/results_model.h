#pragma once

#include "decoder/results_panel.h"
#include "desktop/signs.h"
#include "shell/main_window.h"

#include <QAbstractTableModel>
#include <QCache>

namespace quill::desktop {

/// The rows of the results list with the facts about their files, which are read when a row is first shown.
class ResultsModel final : public QAbstractTableModel {
  public:
    enum Column { name_column, size_column, verdict_column, column_count };

    explicit ResultsModel(const shell::swit& window) : window_(window) {}

    /// Forgets the facts about the rows if they have changed, or if `always`. Returns true if it did.
    bool refresh(bool always = false);

    struct Row {
        decoder::ResultRow result;
        decoder::RowDetails details;
    };

    /// Returns row `row`, valid until the next call. REQUIRES: row < List3.count().
    const Row& at(std::size_t row) const;

    const Signs& signs() const { return signs_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    static constexpr int most_known = 512;  ///< more than a screen shows

    QVariant text(std::size_t row, int column) const;
    QVariant decoration(std::size_t row, int column) const;

    const shell::swit& window_;
    std::uint64_t revision_ = 0;
    int count_ = 0;
    mutable QCache<std::size_t, Row> rows_{most_known};
    mutable Signs signs_;
};

/// Returns the verdict on the file in a few words: "Damaged".
QString verdict_text(const ResultsModel::Row& row);

/// Returns the full verdict, with the problems found.
QString verdict_reasons(const ResultsModel::Row& row);

}  // namespace quill::desktop
