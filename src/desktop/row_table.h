#pragma once

#include "controls/control.h"

#include <QTreeView>

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <utility>

namespace quill::desktop {

/// A table whose rows are the items of a list. Enter or a double click acts on the selection; a table without rows
/// shows a text instead.
class RowTable : public QTreeView {
  public:
    RowTable(controls::ListBox& list, QString text_when_empty);

    /// Updates rows and selection from the list.
    void sync();

    std::function<void()> selection_changed;  ///< the list has the new selection
    std::function<void()> acted;

  protected:
    /// Shows `rows`, which must outlive the table, with the first column as wide as there is room.
    void show_rows(QAbstractItemModel& rows);
    /// Makes each column as wide as its usual longest text.
    void size_columns(std::initializer_list<std::pair<int, const char*>> widest);

    /// Reads the rows again if the list has changed.
    virtual void refresh_rows() = 0;
    /// Convert a row of the table to the list's item, and back; -1 if no row has it.
    virtual std::size_t item_at(int row) const { return static_cast<std::size_t>(row); }
    virtual int row_of(std::size_t item) const { return static_cast<int>(item); }

    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    void take_selection();
    void show_selection();

    controls::ListBox& list_;
    QString text_when_empty_;
    bool syncing_ = false;
};

}  // namespace quill::desktop
