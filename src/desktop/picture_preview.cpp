#include "desktop/picture_preview.h"

#include "files/directory.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QPointer>
#include <QThreadPool>

#include <algorithm>
#include <array>

namespace quill::desktop {
namespace {

constexpr std::uint64_t most_bytes = 32U << 20U;
constexpr qint64 most_pixels = 64'000'000;
constexpr int most_megabytes = 256;  // that one picture may take in memory
constexpr QSize largest_shown(1200, 1200);

/// Formats whose reading takes time in proportion to their size.
constexpr std::array plain_formats = {"png", "jpg", "jpeg", "gif", "bmp", "webp", "tif", "tiff",
                                      "ico", "tga", "pbm",  "pgm", "ppm", "xbm",  "xpm"};

bool is_plain(const QByteArray& format) {
    return std::find(plain_formats.begin(), plain_formats.end(), format) != plain_formats.end();
}

}  // namespace

QImage read_picture(const std::string& path, QSize bounds) {
    const auto size = files::file_size(path);
    if (!size || *size == 0 || *size > most_bytes) return {};
    const auto bytes = files::read_file(path);
    if (!bytes) return {};
    const QByteArray content = QByteArray::fromRawData(bytes->data(), static_cast<qsizetype>(bytes->size()));
    QBuffer buffer;
    buffer.setData(content);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize whole = reader.size();
    if (!is_plain(reader.format()) || !whole.isValid()) return {};
    if (static_cast<qint64>(whole.width()) * whole.height() > most_pixels) return {};
    if (whole.width() > bounds.width() || whole.height() > bounds.height()) {
        reader.setScaledSize(whole.scaled(bounds, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }
    return reader.read();
}

PicturePreview::PicturePreview(QWidget* parent) : QWidget(parent), latest_(std::make_shared<std::atomic<unsigned>>(0)) {
    QImageReader::setAllocationLimit(most_megabytes);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

PicturePreview::~PicturePreview() {
    ++*latest_;
}

QSize PicturePreview::sizeHint() const {
    const int side = fontMetrics().height() * 11;
    return {side, side};
}

void PicturePreview::show_file(const std::string& path) {
    const unsigned request = ++*latest_;
    if (path.empty()) {
        take({});
        return;
    }
    QThreadPool::globalInstance()->start([path, request, latest = latest_, self = QPointer(this)] {
        if (*latest != request) return;
        QImage picture = read_picture(path, largest_shown);
        if (*latest != request) return;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, latest, request, picture] {
                if (self && *latest == request) self->take(picture);
            },
            Qt::QueuedConnection);
    });
}

void PicturePreview::take(const QImage& picture) {
    picture_ = picture;
    setMaximumHeight(has_picture() ? qRound(picture_.height() / devicePixelRatioF()) : QWIDGETSIZE_MAX);
    setVisible(has_picture());
    update();
}

void PicturePreview::paintEvent(QPaintEvent*) {
    if (!has_picture()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSize room = size() * devicePixelRatioF();
    const QSize small = picture_.size().boundedTo(room) == picture_.size()
                            ? picture_.size()
                            : picture_.size().scaled(room, Qt::KeepAspectRatio);
    QRectF place(QPointF(), QSizeF(small) / devicePixelRatioF());
    place.moveCenter(QRectF(rect()).center());
    const QImage scaled =
        small == picture_.size() ? picture_ : picture_.scaled(small, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(place, scaled);
}

}  // namespace quill::desktop
