#pragma once

#include "decoder/naming_window.h"
#include "desktop/view.h"

namespace quill::desktop {

/// The window that asks for the name of a file without a header, and for a favorite directory.
class NamingView final : public View {
  public:
    NamingView(decoder::Form4& window, EventLoop& events);

  protected:
    void on_shown() override;

  private:
    QWidget* make_naming_panel();
    QWidget* make_extensions();
    QWidget* make_favorite_panel();

    decoder::Form4& w_;
};

}  // namespace quill::desktop
