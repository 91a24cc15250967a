#pragma once

#include "desktop/archive_signs.h"
#include "desktop/archive_table.h"
#include "desktop/view.h"
#include "zip/archive_window.h"

#include <QMainWindow>

class QAction;
class QMenu;
class QToolButton;

namespace quill::desktop {

/// The frame of the archive window: adds files dropped on it.
class ArchiveFrame final : public QMainWindow {
  public:
    ArchiveFrame();

    std::function<void(std::vector<std::string> paths)> dropped;
    std::function<void()> activated;

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;
};

/// The archive window: one table of all members, with a toolbar, menus and the panel that moves and extracts files.
class ArchiveWindowView final : public View {
  public:
    ArchiveWindowView(zip::arcview& window, EventLoop& events);
    ~ArchiveWindowView() override;

  protected:
    QSize best_size() const override;
    void on_shown() override;

  private:
    ArchiveFrame& archive_frame() const { return static_cast<ArchiveFrame&>(frame()); }
    void build_menus();
    QMenu* make_row_menu();
    QWidget* make_toolbar();
    QWidget* make_path();
    QToolButton* make_tool(int index, const char* caption);
    QToolButton* make_tool(ArchiveTool tool, const char* caption, const controls::MenuItem& item, QAction* action);
    QWidget* make_list();
    QWidget* make_row_state();
    QWidget* make_facts();
    QWidget* make_panel();

    zip::arcview& w_;
    ArchiveTable* table_ = nullptr;
    QAction* extract_ = nullptr;
    QAction* test_ = nullptr;
};

}  // namespace quill::desktop
