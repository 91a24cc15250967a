#pragma once

#include <QListWidget>

#include <cstddef>
#include <functional>
#include <vector>

namespace quill::desktop {

/// A list of rows that can be dragged: within the list, or to another one. It does not change rows itself.
class OrderList final : public QListWidget {
  public:
    OrderList();

    /// Handles rows of another list dropped here; if empty, they are rejected.
    std::function<void(const std::vector<std::size_t>& rows)> dropped;
    /// Handles a row dragged to another place, or moved there by Alt and an arrow key.
    std::function<void(std::size_t from, std::size_t to)> moved;

    std::vector<std::size_t> selected_rows() const;

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    bool takes(const QDropEvent& event) const;
    std::size_t row_at(const QDropEvent& event) const;
};

}  // namespace quill::desktop
