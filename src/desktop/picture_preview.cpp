#include "desktop/picture_preview.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPointer>

#include <utility>

namespace quill::desktop {
namespace {

constexpr QSize largest_shown(1200, 1200);

}  // namespace

PicturePreview::PicturePreview(Reader reader)
    : reader_(std::move(reader)), latest_(std::make_shared<std::atomic<unsigned>>(0)) {
    thread_.setMaxThreadCount(1);
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
    thread_.start([path, request, read = reader_, latest = latest_, self = QPointer(this)] {
        if (*latest != request) return;
        QImage picture = read(path, largest_shown);
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
