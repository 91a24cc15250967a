#include "desktop/option_button.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace quill::desktop {
namespace {

constexpr qreal corner = 6;

/// Lines break between words; only a word wider than the line is broken.
int text_flags(Qt::AlignmentFlag upright, const QFontMetrics& metrics, const QString& text, int width) {
    const QStringList words = text.split(QLatin1Char(' '));
    const bool fits = std::all_of(words.begin(), words.end(),
                                  [&](const QString& word) { return metrics.horizontalAdvance(word) < width; });
    const int wrapping = fits ? Qt::TextWordWrap : Qt::TextWrapAnywhere;
    return static_cast<int>(Qt::AlignLeft) | static_cast<int>(upright) | wrapping;
}

QColor mixed(const QColor& a, const QColor& b, qreal part_of_b) {
    const auto mix = [&](int x, int y) { return static_cast<int>(x + (y - x) * part_of_b); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

}  // namespace

OptionButton::OptionButton(Look look, QWidget* parent) : QAbstractButton(parent), look_(look), colour_(Qt::white) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    if (look == Look::on_stars) {
        QFont large = font();
        large.setPointSizeF(large.pointSizeF() * 1.4);
        setFont(large);
    }
}

void OptionButton::set_caption(const QString& caption) {
    caption_ = caption;
    setText(QString(caption).replace(QLatin1Char('&'), QLatin1String("&&")));
    updateGeometry();
}

void OptionButton::set_mark(const QString& mark) {
    mark_ = mark;
    updateGeometry();
    update();
}

void OptionButton::set_colour(const QColor& colour) {
    colour_ = colour;
    update();
}

int OptionButton::padding() const {
    return fontMetrics().height() * (look_ == Look::card ? 2 : 1) / 3;
}

int OptionButton::mark_size() const {
    return mark_.isEmpty() ? 0 : fontMetrics().height() * 5 / 4;
}

QRect OptionButton::text_area(const QRect& whole) const {
    const int lead = mark_.isEmpty() ? 0 : mark_size() + padding() * 3 / 2;
    return whole.adjusted(padding() + lead, padding(), -padding(), -padding());
}

QRect OptionButton::text_rect(int width) const {
    constexpr int tall_enough = 100'000;
    const QRect area = text_area(QRect(0, 0, std::max(width, 1), tall_enough));
    const int flags = text_flags(Qt::AlignTop, fontMetrics(), caption_, area.width());
    return fontMetrics().boundingRect(area, flags, caption_);
}

QSize OptionButton::sizeHint() const {
    const int lead = mark_.isEmpty() ? 0 : mark_size() + padding() * 3 / 2;
    const int widest = fontMetrics().averageCharWidth() * 60;
    const int width = std::min(fontMetrics().horizontalAdvance(caption_) + 1, widest) + lead + 2 * padding();
    return {width, heightForWidth(width)};
}

QSize OptionButton::minimumSizeHint() const {
    const int width = std::min(sizeHint().width(), fontMetrics().averageCharWidth() * 24);
    return {width, fontMetrics().height() + 2 * padding()};
}

int OptionButton::heightForWidth(int width) const {
    return std::max(text_rect(width).height(), mark_size()) + 2 * padding();
}

void OptionButton::paint_background(QPainter& painter) const {
    const QRectF frame = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    const bool reached_now = underMouse() && isEnabled();
    const QColor accent = look_ == Look::card ? palette().color(QPalette::Highlight) : colour_;
    if (look_ == Look::card) {
        const QColor base = palette().color(QPalette::Button);
        const QColor line = mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.3);
        const bool chosen = isCheckable() && isChecked();
        painter.setBrush(reached_now || chosen || isDown() ? mixed(base, accent, isDown() ? 0.35 : 0.15) : base);
        painter.setPen(QPen(line, 1));
        painter.drawRoundedRect(frame, corner, corner);
    } else if (reached_now || hasFocus()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, isDown() ? 56 : 28));
        painter.drawRoundedRect(frame, corner, corner);
    }
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(accent, 2));
        painter.drawRoundedRect(frame, corner, corner);
    }
}

void OptionButton::paint_mark(QPainter& painter) const {
    if (mark_.isEmpty()) return;
    const int side = mark_size();
    const QRectF box(padding() + 1, (height() - side) / 2.0, side, side);
    const QColor ink = look_ == Look::card ? palette().color(QPalette::ButtonText) : colour_;
    QColor fill = ink;
    fill.setAlpha(36);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(box, corner - 1, corner - 1);
    painter.setPen(ink);
    painter.drawText(box, Qt::AlignCenter, mark_);
}

void OptionButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paint_background(painter);
    paint_mark(painter);
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(look_ == Look::card ? palette().color(group, QPalette::ButtonText) : colour_);
    const QRect area = text_area(rect());
    painter.drawText(area, text_flags(Qt::AlignVCenter, fontMetrics(), caption_, area.width()), caption_);
}

void OptionButton::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    if (reached) reached();
}

void OptionButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    if (!hasFocus() && left) left();
}

void OptionButton::focusInEvent(QFocusEvent* event) {
    QAbstractButton::focusInEvent(event);
    if (reached) reached();
}

void OptionButton::focusOutEvent(QFocusEvent* event) {
    QAbstractButton::focusOutEvent(event);
    if (!underMouse() && left) left();
}

void OptionButton::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            click();
            return;
        case Qt::Key_Up:
        case Qt::Key_Left:
            focusNextPrevChild(false);
            return;
        case Qt::Key_Down:
        case Qt::Key_Right:
            focusNextPrevChild(true);
            return;
        default:
            QAbstractButton::keyPressEvent(event);
    }
}

}  // namespace quill::desktop
