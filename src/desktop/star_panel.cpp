#include "desktop/star_panel.h"

#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace quill::desktop {
namespace {

constexpr int panel_width = 8810;  // range of the stars' coordinates in twips
constexpr int frame_time = 35;     // milliseconds
constexpr int frames_a_step = StarPanel::step_time / frame_time;
constexpr qreal largest = 1.5;  // pixels

const QColor night_above(0x05, 0x07, 0x10);
const QColor night_below(0x10, 0x15, 0x2b);

}  // namespace

bool wants_still_pictures(const QWidget& widget) {
    return widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) == 0;
}

StarPanel::StarPanel(shell::StarField& field, QWidget* parent) : QWidget(parent), field_(field) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    field_.is_black = [this](int x, int y) { return is_black(x, y); };
    connect(&clock_, &QTimer::timeout, this, [this] { animate(); });
}

StarPanel::~StarPanel() {
    field_.is_black = {};
}

QPointF StarPanel::place_of(const shell::Star& star) const {
    const qreal scale = static_cast<qreal>(width()) / panel_width;
    return {star.x * scale, star.y * scale};
}

bool StarPanel::is_black(int x, int y) const {
    const QWidget* there = childAt(place_of({x, y}).toPoint());
    return there == nullptr || there->property("empty").toBool();
}

void StarPanel::step() {
    for (std::size_t i = 0; i < stars_.size(); ++i) {
        const shell::Star& star = field_.stars()[i];
        const QPointF place = place_of(star);
        const QPointF moved = place - stars_[i].to;
        const bool fresh = std::hypot(moved.x(), moved.y()) > width() / 25.0;
        stars_[i] = {fresh ? place : stars_[i].to, place, fresh, star.drawn};
    }
    frame_ = 0;
    if (!clock_.isActive()) clock_.start(frame_time);
}

qreal StarPanel::way() const {
    return std::min(1.0, static_cast<qreal>(frame_) / frames_a_step);
}

QRect StarPanel::area_of(const Shown& star) const {
    return QRectF(star.from, star.to).normalized().adjusted(-3, -3, 3, 3).toAlignedRect();
}

void StarPanel::animate() {
    if (++frame_ > frames_a_step) {
        clock_.stop();
        return;
    }
    QRegion changed;
    for (const Shown& star : stars_) changed += area_of(star);
    update(changed);
}

void StarPanel::paint_star(QPainter& painter, const Shown& star, qreal way) const {
    if (!star.drawn) return;
    const QPointF place = star.from + (star.to - star.from) * way;
    const QPointF centre(width() * 3702.0 / panel_width, width() * 1822.0 / panel_width);
    const QPointF out = place - centre;
    const qreal near = std::min(1.0, std::hypot(out.x(), out.y()) / (width() * 0.5));  // 0 far away, 1 passing by
    QColor light(Qt::white);
    light.setAlphaF(static_cast<float>((0.25 + 0.65 * near) * (star.fresh ? way : 1.0)));
    painter.setBrush(light);
    const qreal radius = 0.6 + (largest - 0.6) * near;
    painter.drawEllipse(place, radius, radius);
}

void StarPanel::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    QLinearGradient night(0, 0, 0, height());
    night.setColorAt(0, night_above);
    night.setColorAt(1, night_below);
    for (const QRect& part : event->region()) painter.fillRect(part, night);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (const Shown& star : stars_) {
        if (event->region().intersects(area_of(star))) paint_star(painter, star, way());
    }
}

void StarPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    step();
}

void StarPanel::mouseMoveEvent(QMouseEvent* event) {
    QWidget::mouseMoveEvent(event);
    if (reached) reached();
}

void StarPanel::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    if (reached) reached();
}

}  // namespace quill::desktop
