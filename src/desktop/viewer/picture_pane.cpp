#include "desktop/viewer/picture_pane.h"

#include "desktop/pieces.h"
#include "desktop/shown_text.h"
#include "desktop/viewer/pixels_image.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quill::desktop {
namespace {

constexpr int line_step = 20;                    // pixels that a scroll bar moves by
constexpr double wheel_step = 1.15;              // a notch of the wheel zooms by this factor
constexpr double notch = 120;                    // of a wheel
constexpr double most_scaled_ahead = 4'000'000;  // pixels of a picture that is scaled once, not for each drawing

/// Draws the squares visible through transparent pixels.
void draw_squares(QPainter& painter, const QRectF& area, const QPalette& palette) {
    constexpr int side = 8;
    QPixmap squares(2 * side, 2 * side);
    const bool dark = palette.window().color().lightness() < 128;
    squares.fill(dark ? QColor(0x50, 0x50, 0x50) : QColor(0xFF, 0xFF, 0xFF));
    QPainter tile(&squares);
    const QColor other = dark ? QColor(0x40, 0x40, 0x40) : QColor(0xD8, 0xD8, 0xD8);
    tile.fillRect(0, 0, side, side, other);
    tile.fillRect(side, side, side, side, other);
    tile.end();
    painter.drawTiledPixmap(area, squares);
}

}  // namespace

PicturePane::PicturePane(viewer::frmPic& window) : w_(window) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Window);
    viewport()->setCursor(Qt::ArrowCursor);
    setMinimumSize(line_height() * 4, line_height() * 3);
}

QSizeF PicturePane::displayed() const {
    if (image_.isNull()) return {};
    const QSizeF pixels = w_.Image1.stretch ? QSizeF(w_.Image1.width, w_.Image1.height) : QSizeF(image_.size());
    return pixels / devicePixelRatioF();
}

void PicturePane::sync() {
    syncing_ = true;
    if (std::exchange(revision_, w_.Image1.revision) != w_.Image1.revision) {
        image_ = image_of(w_.Image1.pixels);
        scaled_ = {};
    }
    lay_out();
    const double ratio = devicePixelRatioF();
    const auto follow = [ratio](QScrollBar* bar, const viewer::PaneBar& held) {
        if (held.visible) bar->setValue(static_cast<int>(std::lround(static_cast<double>(held.value - 1) / ratio)));
    };
    follow(horizontalScrollBar(), w_.HScroll1);
    follow(verticalScrollBar(), w_.VScroll1);
    syncing_ = false;
    viewport()->update();
}

QSize PicturePane::bars_beside(QSize size) const {
    const QSizeF picture = displayed();
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return {picture.height() > size.height() ? bar : 0, picture.width() > size.width() ? bar : 0};
}

void PicturePane::lay_out() {
    const bool scrolls = w_.f(8).checked && !w_.sm(1).checked;
    const Qt::ScrollBarPolicy policy = scrolls ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff;
    setHorizontalScrollBarPolicy(policy);
    setVerticalScrollBarPolicy(policy);
    const QSizeF size = displayed();
    const auto set = [](QScrollBar* bar, double content, int shown) {
        bar->setPageStep(shown);
        bar->setSingleStep(line_step);
        bar->setRange(0, std::max(0, static_cast<int>(std::ceil(content)) - shown));
    };
    set(horizontalScrollBar(), scrolls ? size.width() : 0, viewport()->width());
    set(verticalScrollBar(), scrolls ? size.height() : 0, viewport()->height());
}

void PicturePane::take_bars() {
    const double ratio = devicePixelRatioF();
    const auto take = [ratio](viewer::PaneBar& held, const QScrollBar* bar) {
        if (!held.visible) return;
        const auto value = static_cast<std::size_t>(std::lround(bar->value() * ratio)) + 1;
        held.value = std::min(value, std::max<std::size_t>(1, held.maximum));
    };
    take(w_.HScroll1, horizontalScrollBar());
    take(w_.VScroll1, verticalScrollBar());
}

void PicturePane::scrollContentsBy(int, int) {
    viewport()->update();
    if (syncing_) return;
    take_bars();
    if (scrolled) scrolled();
}

const QImage& PicturePane::scaled(QSize size) {
    if (scaled_.size() != size) {
        scaled_ = image_.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return scaled_;
}

void PicturePane::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    if (w_.note.visible && image_.isNull()) {
        painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap,
                         shown_message(w_.note.text));
    }
    const QSizeF size = displayed();
    if (size.isEmpty()) return;
    const double ratio = devicePixelRatioF();
    const auto place = [ratio](const QScrollBar* bar, double content, int shown) {
        if (content > shown) return static_cast<double>(-bar->value());
        return std::floor((shown - content) / 2 * ratio) / ratio;  // whole pixels of the screen
    };
    const QRectF area(QPointF(place(horizontalScrollBar(), size.width(), viewport()->width()),
                              place(verticalScrollBar(), size.height(), viewport()->height())),
                      size);
    if (image_.hasAlphaChannel()) draw_squares(painter, area, palette());
    const QSize pixels = (size * ratio).toSize().expandedTo(QSize(1, 1));
    const bool smaller = pixels.width() < image_.width() || pixels.height() < image_.height();
    const bool ahead = smaller && double{1} * pixels.width() * pixels.height() <= most_scaled_ahead;
    painter.setRenderHint(QPainter::SmoothPixmapTransform, pixels != image_.size());
    painter.drawImage(area, ahead ? scaled(pixels) : image_);
}

void PicturePane::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    if (resized) resized(event->size());
    sync();
}

void PicturePane::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    const double turned = event->angleDelta().y() / notch;
    const QSizeF size = displayed();
    const QPointF corner(std::max(0.0, (viewport()->width() - size.width()) / 2),
                         std::max(0.0, (viewport()->height() - size.height()) / 2));
    if (turned != 0 && zoomed) {
        zoomed(std::pow(wheel_step, turned), (event->position() - corner) * devicePixelRatioF());
    }
    event->accept();
}

void PicturePane::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    dragging_ = true;
    drag_from_ = event->position();
    viewport()->setCursor(Qt::ClosedHandCursor);
}

void PicturePane::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_) return;
    const QPointF moved = (event->position() - drag_from_) * devicePixelRatioF();
    drag_from_ = event->position();
    if (panned) panned(moved.x(), moved.y());
}

void PicturePane::mouseReleaseEvent(QMouseEvent* event) {
    dragging_ = false;
    viewport()->setCursor(Qt::ArrowCursor);
    if (event->button() == Qt::RightButton && menu_wanted) menu_wanted(event->globalPosition().toPoint());
}

void PicturePane::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && closed) closed();
}

void PicturePane::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Menu && menu_wanted) {
        menu_wanted(viewport()->mapToGlobal(viewport()->rect().center()));
    } else if (!key_pressed || !key_pressed(event->key())) {
        event->ignore();
    }
}

}  // namespace quill::desktop
