#pragma once

#include "desktop/option_button.h"
#include "desktop/picture_preview.h"
#include "desktop/results_model.h"
#include "desktop/view.h"
#include "shell/main_window.h"

#include <QMainWindow>

#include <functional>
#include <vector>

class QStackedWidget;
class QLayout;
class QTreeView;
class QVBoxLayout;

namespace quill::desktop {

class StarPanel;

/// The frame of the main window: reports a file dropped on it and the number keys.
class MainFrame final : public QMainWindow {
  public:
    MainFrame();

    std::function<void(const std::string& path)> dropped;
    std::function<bool(int number)> number_pressed;  ///< returns false if the number has no meaning
    std::function<void()> activated;

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
};

/// The main window: its menus and, one at a time, the start panel, the results and the create wizard.
class MainWindowView final : public View {
  public:
    MainWindowView(shell::swit& window, EventLoop& events);
    ~MainWindowView() override { destroy_frame(); }

    /// Shows the selected result's picture with `pictures`.
    void use_pictures(platform::Pictures& pictures) { preview_->use(pictures); }

    /// Handles a file dropped on the window.
    std::function<void(const std::string& path)> dropped;
    /// Handles files and directories dropped on the create wizard's list.
    std::function<void(const std::vector<std::string>& paths)> files_dropped;

  protected:
    void on_shown() override;

  private:
    MainFrame& main_frame() const { return static_cast<MainFrame&>(frame()); }

    // main_window_view.cpp
    void build_menus();
    void build_panels();
    QWidget* make_file_line();
    void show_uppermost_panel();
    void focus_panel();
    bool press_number(int number);

    // start_panel.cpp
    QWidget* make_start_panel();
    QWidget* make_title();
    QWidget* make_option(int index);
    QWidget* make_progress();

    // results_panel.cpp
    QWidget* make_results_panel();
    QLayout* make_results_head();
    QTreeView* make_results_list();
    QWidget* make_results_buttons();
    void bind_results(QTreeView* list);
    void add_row_action(QTreeView* list, controls::Button& button, const QKeySequence& key);
    void show_details(std::optional<std::size_t> row);

    // create_panel.cpp
    QWidget* make_create_panel();
    QWidget* make_choices(controls::Frame& frame, std::vector<controls::Choice*> choices);
    QWidget* make_directory_page();
    QWidget* make_name_page();
    QWidget* make_files_page();
    bool is_choosing_kind() const;

    shell::swit& w_;
    QStackedWidget* panels_ = nullptr;
    StarPanel* stars_ = nullptr;
    std::vector<OptionButton*> options_;
    ResultsModel results_;
    QTreeView* results_list_ = nullptr;
    PicturePreview* preview_ = nullptr;
};

}  // namespace quill::desktop
