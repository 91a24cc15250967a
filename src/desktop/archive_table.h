#pragma once

#include "desktop/archive_model.h"

#include <QElapsedTimer>
#include <QTreeView>

#include <functional>

namespace quill::desktop {

/// The table of an archive's members. Typing goes to the first name that begins so, a click on a heading sorts, Enter
/// or a double click opens, and selected rows can be dragged to other programs as files.
class ArchiveTable final : public QTreeView {
  public:
    explicit ArchiveTable(zip::arcview& window);

    /// Brings rows and selection to what the window holds.
    void sync();

    void keyboardSearch(const QString& search) override;
    /// The next letter begins another name.
    void forget_typing() { typed_.clear(); }

    /// How many times a row was read to be drawn.
    std::size_t rows_read() const { return model_.rows_read(); }

    std::function<void()> selection_changed;           ///< the window's list has the new selection
    std::function<void(std::size_t member)> scrolled;  ///< the first row in sight, while in the archive's order
    std::function<void()> acted;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void startDrag(Qt::DropActions actions) override;

  private:
    void size_columns();
    void take_selection();
    void show_selection();
    void report_scrolling();

    zip::arcview& window_;
    ArchiveModel model_;
    QString typed_;
    QElapsedTimer since_typed_;
    bool syncing_ = false;
};

}  // namespace quill::desktop
