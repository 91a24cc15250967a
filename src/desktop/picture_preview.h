#pragma once

#include <QImage>
#include <QThreadPool>
#include <QWidget>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace quill::desktop {

/// Shows a picture file, scaled down to its own size. Pictures are read beside the interface, one at a time; of those
/// asked for meanwhile, only the last one is read.
class PicturePreview final : public QWidget {
  public:
    /// Reads the picture at a path, no larger than the bounds; null where there is none to show.
    using Reader = std::function<QImage(const std::string& path, QSize bounds)>;

    explicit PicturePreview(Reader reader);
    ~PicturePreview() override;

    /// Shows the file at `path` as soon as it is read. Empties itself for an empty path, and where there is no picture.
    void show_file(const std::string& path);

    bool has_picture() const { return !picture_.isNull(); }
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void take(const QImage& picture);

    Reader reader_;
    std::shared_ptr<std::atomic<unsigned>> latest_;  ///< number of the request that still counts
    QImage picture_;
    QThreadPool thread_;
};

}  // namespace quill::desktop
