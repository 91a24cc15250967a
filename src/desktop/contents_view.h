#pragma once

#include "desktop/view.h"
#include "zip/contents_window.h"

class QTreeWidget;

namespace quill::desktop {

/// The contents report: a table of an archive's members and their total sizes.
class ContentsView final : public View {
  public:
    ContentsView(zip::Form1& window, EventLoop& events);

  private:
    QTreeWidget* make_table();
    QWidget* make_totals();
    void fill(QTreeWidget* table) const;

    zip::Form1& w_;
};

}  // namespace quill::desktop
