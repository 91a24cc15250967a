#pragma once

#include "platform/pictures.h"

#include <QImage>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quill::desktop {

/// The pictures of a page, decoded outside the interface. Those that arrive soon after one another are reported
/// together, since each report lays out the page.
class PagePictures {
  public:
    explicit PagePictures(platform::Pictures& pictures);
    ~PagePictures();
    PagePictures(const PagePictures&) = delete;
    PagePictures& operator=(const PagePictures&) = delete;

    /// Requests the file at `path`, scaled down to fit `bounds`; the page calls it `name`.
    void ask(const QUrl& name, const std::string& path, platform::PictureSize bounds);

    /// Drops pending requests: another page is shown.
    void drop_all();

    /// A decoded picture and its name.
    struct Arrived {
        QUrl name;
        QImage image;
    };
    std::function<void(const std::vector<Arrived>& pictures)> arrived;

  private:
    void take(const QUrl& name, const platform::Picture& picture);

    platform::Pictures& pictures_;
    std::map<QUrl, platform::Pictures::Ticket> waiting_;
    std::vector<Arrived> fresh_;
    QTimer report_;
};

}  // namespace quill::desktop
