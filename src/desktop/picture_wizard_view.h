#pragma once

#include "desktop/view.h"
#include "htx/picture_wizard/picture_wizard.h"

class QBoxLayout;
class QListWidget;

namespace quill::desktop {

/// The picture wizard: a page for each step above the buttons for moving between them.
class PictureWizardView final : public View {
  public:
    PictureWizardView(htx::HtxWiz& window, EventLoop& events);

  protected:
    void on_shown() override;

  private:
    QWidget* make_welcome();
    QWidget* make_directories();
    QWidget* make_pictures();
    QWidget* make_letters();
    QWidget* make_titles();
    QWidget* make_order();
    QWidget* make_saving();
    QWidget* make_progress();
    QWidget* make_buttons();
    QWidget* make_preview();
    QWidget* make_sample();
    QListWidget* bind_list(controls::ListBox& list, QListWidget* widget);
    void add_field(QBoxLayout& layout, controls::Label& heading, QWidget* field);
    void focus_first();

    htx::HtxWiz& w_;
};

}  // namespace quill::desktop
