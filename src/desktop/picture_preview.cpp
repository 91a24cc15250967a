#include "desktop/picture_preview.h"

#include "desktop/viewer/pixels_image.h"

#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace quill::desktop {
namespace {

constexpr platform::PictureSize largest_shown = {1200, 1200};

}  // namespace

PicturePreview::PicturePreview() {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize PicturePreview::sizeHint() const {
    const int side = fontMetrics().height() * 11;
    return {side, side};
}

void PicturePreview::drop_request() {
    if (ticket_ != 0) pictures_->cancel(std::exchange(ticket_, 0));
}

void PicturePreview::show_file(const std::string& path) {
    drop_request();
    if (path.empty() || pictures_ == nullptr) return take({});
    platform::PictureRequest request;
    request.source.path = path;
    request.bounds = largest_shown;
    ticket_ = pictures_->request(request, [self = QPointer(this)](const platform::Picture& picture) {
        if (!self) return;
        self->ticket_ = 0;
        self->take(image_of(picture.pixels).copy());  // stored for long
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
