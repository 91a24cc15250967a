#pragma once

#include "desktop/archive_model.h"
#include "desktop/row_table.h"

#include <QElapsedTimer>

#include <array>
#include <functional>

namespace quill::desktop {

/// The table of an archive's members. Typing moves to the first name with that beginning, a click on a heading sorts,
/// and selected rows can be dragged to other programs as files.
class ArchiveTable final : public RowTable {
  public:
    explicit ArchiveTable(zip::arcview& window);

    void keyboardSearch(const QString& search) override;
    /// Shows only the columns that matter most, where a panel has taken a part of the room. So does a narrow window.
    void make_narrow(bool narrow);

    /// Makes the next letter begin another name.
    void forget_typing() { typed_.clear(); }

    /// Returns how often a row was read for drawing.
    std::size_t rows_read() const { return model_.rows_read(); }

    /// Is called with the first visible row, while in the archive's order.
    std::function<void(std::size_t member)> scrolled;

    /// The selected members that had no file to drag, after the others were dropped.
    std::function<void(const std::vector<std::size_t>& members)> left_out;

  protected:
    void refresh_rows() override { model_.refresh(); }
    std::size_t item_at(int row) const override { return model_.member_at(row); }
    int row_of(std::size_t item) const override { return model_.row_of(item); }
    void startDrag(Qt::DropActions actions) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void report_scrolling();
    void fit_columns();

    zip::arcview& window_;
    ArchiveModel model_;
    std::array<int, ArchiveModel::column_count> widths_{};  ///< of the columns, also of those that are hidden
    bool narrow_ = false;
    QString typed_;
    QElapsedTimer since_typed_;
};

}  // namespace quill::desktop
