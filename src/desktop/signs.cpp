#include "desktop/signs.h"

#include <QFileInfo>
#include <QMimeDatabase>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPolygonF>

#include <array>
#include <utility>

namespace quill::desktop {
namespace {

constexpr int drawn_size = 128;  // pixels; scaled down for display

const QColor good(0x2e, 0x9e, 0x5b);
const QColor plain(0x3b, 0x82, 0xc4);
const QColor bad(0xd9, 0x7a, 0x06);

/// Returns an icon that looks the same in a selected row.
QIcon icon_of(const QPixmap& picture) {
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected);
    return icon;
}

QPen thick(const QColor& colour) {
    return {colour, drawn_size / 9.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void paint_tick(QPainter& painter, const QColor& colour) {
    painter.setPen(QPen(Qt::white, 8));  // visible in a selected row too
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(8, 8, 112, 112));
    painter.setPen(thick(Qt::white));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF({{38, 66}, {57, 86}, {92, 44}}));
}

void paint_warning(QPainter& painter) {
    painter.setPen(QPen(bad, 14, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(bad);
    painter.drawPolygon(QPolygonF({{64, 18}, {114, 108}, {14, 108}}));
    painter.setPen(thick(Qt::white));
    painter.drawLine(QPointF(64, 50), QPointF(64, 76));
    painter.drawPoint(QPointF(64, 97));
}

/// Returns a colour for the kind of file.
QColor band_colour(const QMimeType& type) {
    static constexpr std::array<std::pair<const char*, QRgb>, 6> colours = {{{"image/", 0xff2f8f6b},
                                                                             {"audio/", 0xff9a4fb5},
                                                                             {"video/", 0xffb5484f},
                                                                             {"text/", 0xff5a6b7f},
                                                                             {"application/pdf", 0xffc0392b},
                                                                             {"application/zip", 0xffb07c1f}}};
    for (const auto& [prefix, colour] : colours) {
        if (type.name().startsWith(QLatin1String(prefix))) return QColor(colour);
    }
    return QColor(0x3f, 0x62, 0x9f);
}

QIcon sheet(const QString& extension, const QColor& band) {
    QPixmap picture(drawn_size, drawn_size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath page;
    page.addPolygon(QPolygonF({{22, 6}, {78, 6}, {106, 34}, {106, 122}, {22, 122}, {22, 6}}));
    painter.setPen(QPen(QColor(0x80, 0x88, 0x94), 4));
    painter.setBrush(QColor(0xf6, 0xf7, 0xf9));
    painter.drawPath(page);
    painter.drawPolyline(QPolygonF({{78, 6}, {78, 34}, {106, 34}}));
    painter.setPen(Qt::NoPen);
    painter.setBrush(band);
    painter.drawRoundedRect(QRectF(6, 62, 116, 42), 8, 8);
    QFont font;
    font.setBold(true);
    font.setPixelSize(extension.size() > 3 ? 30 : 36);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(6, 62, 116, 42), Qt::AlignCenter, extension.left(4).toUpper());
    return icon_of(picture);
}

QIcon drawn_verdict(codec::Verdict verdict) {
    QPixmap picture(drawn_size, drawn_size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    switch (verdict) {
        case codec::Verdict::verified:
            paint_tick(painter, good);
            break;
        case codec::Verdict::whole:
            paint_tick(painter, plain);
            break;
        case codec::Verdict::damaged:
        case codec::Verdict::incomplete:
        case codec::Verdict::refused:
            paint_warning(painter);
            break;
    }
    return icon_of(picture);
}

}  // namespace

template <class Make>
const QIcon& Signs::find(const QString& key, const Make& make) {
    if (const QIcon* known = icons_.object(key)) return *known;
    ++made_;
    auto* icon = new QIcon(make());
    icons_.insert(key, icon);
    return *icon;
}

const QIcon& Signs::of_verdict(codec::Verdict verdict) {
    return find(QString::number(static_cast<int>(verdict)), [verdict] { return drawn_verdict(verdict); });
}

const QIcon& Signs::of_type(const QString& theme_name, const QString& name) {
    const QString extension = QFileInfo(name).suffix();
    return find(theme_name + QLatin1Char('/') + extension.toLower(), [&] {
        const QIcon themed = QIcon::fromTheme(theme_name);
        if (!themed.isNull()) return themed;
        const QMimeType type = QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension);
        return sheet(extension, band_colour(type));
    });
}

QIcon program_icon() {
    const QIcon themed = QIcon::fromTheme(QStringLiteral("quillbright"));
    if (!themed.isNull()) return themed;
    QPixmap picture(drawn_size, drawn_size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x10, 0x15, 0x2b));
    painter.drawRoundedRect(QRectF(4, 4, 120, 120), 26, 26);
    QPainterPath feather(QPointF(30, 104));
    feather.cubicTo(36, 60, 62, 26, 102, 22);
    feather.cubicTo(104, 58, 82, 84, 46, 90);
    feather.closeSubpath();
    painter.setBrush(QColor(0x7f, 0xe7, 0xff));
    painter.drawPath(feather);
    painter.setPen(QPen(QColor(0x10, 0x15, 0x2b), 5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(40, 92), QPointF(84, 42));
    painter.setPen(QPen(Qt::white, 6, Qt::SolidLine, Qt::RoundCap));
    for (const QPointF star : {QPointF(28, 34), QPointF(52, 22), QPointF(100, 98)}) painter.drawPoint(star);
    return QIcon(picture);
}

}  // namespace quill::desktop
