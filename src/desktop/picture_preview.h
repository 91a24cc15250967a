#pragma once

#include "platform/pictures.h"

#include <QImage>
#include <QWidget>

#include <string>

namespace quill::desktop {

/// Shows a picture file, scaled down to the widget's size. Empty until it has the service that decodes pictures.
class PicturePreview final : public QWidget {
  public:
    PicturePreview();

    /// Sets the service, which must exist whenever a file is shown.
    void use(platform::Pictures& pictures) { pictures_ = &pictures; }

    /// Shows the file at `path` as soon as it is decoded. Shows nothing for an empty path, or if there is no picture.
    void show_file(const std::string& path);

    bool has_picture() const { return !picture_.isNull(); }
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void drop_request();
    void take(const QImage& picture);

    platform::Pictures* pictures_ = nullptr;
    platform::Pictures::Ticket ticket_ = 0;
    QImage picture_;
};

}  // namespace quill::desktop
