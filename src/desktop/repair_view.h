#pragma once

#include "decoder/repair_guide.h"
#include "desktop/view.h"

#include <vector>

class QMainWindow;

namespace quill::desktop {

/// The guide that opens when decoding has failed: one of its main choices, its tutorial and its further options shows
/// at a time.
class RepairView final : public View {
  public:
    RepairView(decoder::Form3& window, EventLoop& events);

  protected:
    QSize best_size() const override;

  private:
    void build_menu(QMainWindow& frame);
    QWidget* make_main_page();
    QWidget* make_tutorial();
    QWidget* make_further_options();
    QWidget* make_choices(const std::vector<controls::Choice*>& choices);
    QWidget* make_buttons();

    decoder::Form3& w_;
    QWidget* main_page_ = nullptr;
};

}  // namespace quill::desktop
