#pragma once

#include "desktop/page_pictures.h"
#include "htx/book_reader.h"
#include "platform/browser.h"

#include <QTextBrowser>

#include <functional>
#include <string>

namespace quill::desktop {

/// Shows a book's pages in Qt's own text browser: no scripts, no network, only the book's files.
class PlainBrowser final : public QTextBrowser, public platform::Browser {
  public:
    explicit PlainBrowser(const htx::Form7& book);

    std::function<void(const std::string& page, const std::string& title)> arrived;
    std::function<void(const std::string& page, const std::string& address)> clicked;

    /// The user wants the letters larger, or smaller, by so many steps.
    std::function<void(int steps)> zoomed;
    /// The user has pressed a key to scroll beyond an end of the page.
    std::function<void(bool forward)> turned;

    void navigate(const std::string& page, const std::string& fragment) override;
    void go_back() override { backward(); }
    void go_forward() override { forward(); }
    void copy() override { QTextBrowser::copy(); }
    void select_all() override { selectAll(); }
    bool find(const std::string& text, Direction direction) override;
    void find_place(const std::string& text, std::size_t number) override;
    void print() override;
    void set_zoom(int percent) override;
    std::size_t place() const override;
    void go_to_place(std::size_t place) override;

    /// Returns the resource that the document requests: a file of the book, or nothing; for a picture, an empty one
    /// until it is decoded. Never null, because the document would then search for a file itself.
    QVariant loadResource(int type, const QUrl& name) override;

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    std::string file_of(const QUrl& name) const;
    void set_paper();
    int room() const;
    void ask_for(const QUrl& name, const std::string& path);
    void ask_again();
    void size_pictures();
    void show_pictures(const std::vector<PagePictures::Arrived>& pictures);

    const htx::Form7& book_;
    PagePictures pictures_;
    int zoom_ = 100;       ///< percent
    double usual_points_;  ///< size of the letters without zoom
    int wheel_ = 0;        ///< eighths of a degree turned with Ctrl that made no step yet
    std::string page_;     ///< the one that was loaded last; `source` is still the one before while it is loaded
};

}  // namespace quill::desktop
