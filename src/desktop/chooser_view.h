#pragma once

#include "desktop/view.h"
#include "encoder/file_chooser.h"

class QHBoxLayout;
class QListWidget;
class QTabBar;
class QVBoxLayout;

namespace quill::desktop {

class FileTable;

/// The file chooser: the files of a directory, and the recent directories and the merge page behind tabs.
class ChooserView final : public View {
  public:
    ChooserView(encoder::cmdg& window, EventLoop& events);

  protected:
    void on_shown() override;

  private:
    int page_shown() const;  ///< Returns the index of the current tab.

    QTabBar* make_tabs();
    QWidget* make_path_line();
    QWidget* make_file_page();
    QWidget* make_favorites();
    QWidget* make_collected();
    QWidget* make_file_buttons();
    QWidget* make_recent_page();
    QWidget* make_merge_page();
    QWidget* make_merge_list();
    QWidget* make_directory_column(controls::DriveListBox& drive, controls::DirListBox& directory);

    /// Binds a list of texts. A click or Enter on a row selects it and runs the list's `change`.
    QListWidget* bind_list(controls::ListBox& list, QListWidget* widget);
    FileTable* bind_files(controls::FileListBox& list);

    encoder::cmdg& w_;
    FileTable* files_ = nullptr;
    QListWidget* recent_ = nullptr;
    FileTable* parts_ = nullptr;
};

}  // namespace quill::desktop
