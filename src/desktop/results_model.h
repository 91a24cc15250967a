#pragma once

#include "decoder/results_panel.h"
#include "desktop/signs.h"
#include "shell/main_window.h"

#include <QAbstractTableModel>
#include <QCache>

#include <vector>

namespace quill::desktop {

/// The rows of the results list with the facts about their files, which are read when a row is first shown.
class ResultsModel final : public QAbstractTableModel {
  public:
    enum Column { name_column, size_column, verdict_column, source_column, column_count };

    explicit ResultsModel(const shell::swit& window) : window_(window) {}

    /// Forgets the facts about the rows if they have changed, or if `always`. Returns true if it did.
    bool refresh(bool always = false);

    struct Row {
        decoder::ResultRow result;
        decoder::RowDetails details;
    };

    /// Returns row `row`, valid until the next call. REQUIRES: row < List3.count().
    const Row& at(std::size_t row) const;

    /// Return the list's row that is shown in row `shown`, and the reverse: the files of the latest run come first.
    std::size_t list_row(int shown) const { return order_.at(static_cast<std::size_t>(shown)); }
    int shown_row(std::size_t row) const;

    /// Returns true if the files come from several messages.
    bool has_several_runs() const;

    const Signs& signs() const { return signs_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Returns the addresses of the files in the rows, for a drag to another program.
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    static constexpr int most_known = 512;  ///< more than a screen shows

    unsigned run_of(std::size_t row) const;
    QVariant text(std::size_t row, int column) const;
    QVariant decoration(std::size_t row, int column) const;

    const shell::swit& window_;
    std::uint64_t revision_ = 0;
    std::vector<std::size_t> order_;  ///< rows of the list, as shown
    mutable QCache<std::size_t, Row> rows_{most_known};
    mutable Signs signs_;
};

/// Returns the verdict on the file in a few words: "Damaged".
QString verdict_text(const ResultsModel::Row& row);

/// Returns the full verdict, with the problems found.
QString verdict_reasons(const ResultsModel::Row& row);

}  // namespace quill::desktop
