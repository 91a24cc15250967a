#pragma once

#include <QListWidget>

#include <functional>
#include <string>
#include <vector>

class QMimeData;

namespace quill::desktop {

/// Returns the paths of the dragged local files and directories.
std::vector<std::string> dragged_files(const QMimeData* data);

/// A list that accepts dropped files and directories.
class DropList final : public QListWidget {
  public:
    DropList();

    std::function<void(const std::vector<std::string>& paths)> dropped;

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
};

}  // namespace quill::desktop
