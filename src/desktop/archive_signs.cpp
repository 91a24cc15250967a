#include "desktop/archive_signs.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPolygonF>

namespace quill::desktop {
namespace {

constexpr int drawn_size = 128;  // pixels; scaled down for display

void draw_arrow(QPainter& painter, QPointF from, QPointF to) {
    const QPointF along = (to - from) / std::hypot(to.x() - from.x(), to.y() - from.y()) * 20;
    const QPointF across(-along.y(), along.x());
    painter.drawLine(from, to);
    painter.drawPolyline(QPolygonF({to - along + across, to, to - along - across}));
}

void draw_sheet(QPainter& painter) {
    painter.drawPolygon(QPolygonF({{30, 12}, {76, 12}, {100, 36}, {100, 116}, {30, 116}}));
    painter.drawPolyline(QPolygonF({{76, 12}, {76, 36}, {100, 36}}));
}

void draw_folder(QPainter& painter) {
    painter.drawPolygon(QPolygonF({{12, 28}, {48, 28}, {58, 40}, {116, 40}, {116, 106}, {12, 106}}));
}

void draw_suitcase(QPainter& painter) {
    painter.drawRoundedRect(QRectF(12, 42, 104, 66), 10, 10);
    painter.drawPolyline(QPolygonF({{46, 42}, {46, 24}, {82, 24}, {82, 42}}));
    painter.drawLine(QPointF(12, 70), QPointF(116, 70));
}

void draw_door(QPainter& painter) {
    painter.drawPolyline(QPolygonF({{72, 40}, {72, 14}, {18, 14}, {18, 114}, {72, 114}, {72, 88}}));
    draw_arrow(painter, {46, 64}, {116, 64});
}

void draw_box(QPainter& painter) {
    painter.drawPolyline(QPolygonF({{34, 70}, {14, 70}, {14, 114}, {114, 114}, {114, 70}, {94, 70}}));
    draw_arrow(painter, {64, 92}, {64, 16});
}

void draw_check_mark(QPainter& painter) {
    painter.drawEllipse(QRectF(14, 14, 100, 100));
    painter.drawPolyline(QPolygonF({{40, 66}, {58, 84}, {90, 46}}));
}

}  // namespace

QIcon archive_tool_icon(ArchiveTool tool, const QColor& colour) {
    QPixmap picture(drawn_size, drawn_size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, drawn_size / 14.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    switch (tool) {
        case ArchiveTool::open:
            draw_sheet(painter);
            draw_arrow(painter, {48, 92}, {82, 58});
            break;
        case ArchiveTool::move:
            draw_folder(painter);
            draw_arrow(painter, {36, 73}, {92, 73});
            break;
        case ArchiveTool::repack:
            draw_suitcase(painter);
            break;
        case ArchiveTool::leave:
            draw_door(painter);
            break;
        case ArchiveTool::extract:
            draw_box(painter);
            break;
        case ArchiveTool::test:
            draw_check_mark(painter);
            break;
    }
    return QIcon(picture);
}

}  // namespace quill::desktop
