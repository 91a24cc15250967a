#pragma once

#include "desktop/view.h"
#include "htx/book_reader.h"

#include <QMainWindow>

#include <functional>

class QListWidget;
class QStackedWidget;

namespace quill::desktop {

class PlainBrowser;

/// The frame of the reader: reports each new place or size.
class BookFrame final : public QMainWindow {
  public:
    std::function<void()> resized;

  protected:
    void resizeEvent(QResizeEvent* event) override;
};

/// The reader: a page between its menus and its buttons, or the contents of the book.
class BookView final : public View {
  public:
    BookView(htx::Form7& window, EventLoop& events);
    ~BookView() override;

  protected:
    void place() override;
    void on_shown() override;

  private:
    BookFrame& book_frame() const { return static_cast<BookFrame&>(frame()); }
    void build_menus();
    QWidget* make_reading();
    QWidget* make_buttons();
    QWidget* make_hits();
    QWidget* make_contents();
    QListWidget* bind_rows(controls::ListBox& list);
    void connect_browser();

    htx::Form7& w_;
    PlainBrowser* browser_ = nullptr;
    QStackedWidget* screens_ = nullptr;
};

}  // namespace quill::desktop
