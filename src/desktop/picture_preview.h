#pragma once

#include <QImage>
#include <QWidget>

#include <atomic>
#include <memory>
#include <string>

namespace quill::desktop {

/// Shows a picture file, scaled down to its own size. Reading and decoding happen beside the interface; files and
/// pictures beyond a sensible size, and kinds that are not plain pictures, are not tried.
class PicturePreview final : public QWidget {
  public:
    explicit PicturePreview(QWidget* parent = nullptr);
    ~PicturePreview() override;

    /// Shows the file at `path`; empties itself for an empty path or what is no picture.
    void show_file(const std::string& path);

    bool has_picture() const { return !picture_.isNull(); }
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void take(const QImage& picture);

    std::shared_ptr<std::atomic<unsigned>> latest_;  ///< number of the request that still counts
    QImage picture_;
};

/// The picture in the file at `path`, no larger than `bounds`; null where it is none, or too large to try.
QImage read_picture(const std::string& path, QSize bounds);

}  // namespace quill::desktop
