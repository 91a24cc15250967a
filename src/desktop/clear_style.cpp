#include "desktop/clear_style.h"

#include <QPainter>
#include <QPalette>
#include <QStyleOption>

#include <algorithm>
#include <cmath>

namespace quill::desktop {
namespace {

constexpr double readable = 4.5;        // contrast
constexpr double corner = 2;            // pixels
constexpr double outline_alpha = 0.45;  // of the text's colour: at least 3:1 against the window

bool has_focus(const QStyleOption& option) {
    return (option.state & QStyle::State_HasFocus) != 0;
}

QPen outline_pen(const QStyleOption& option) {
    if (has_focus(option)) return QPen(option.palette.highlight().color(), 2);
    QColor colour = option.palette.windowText().color();
    colour.setAlphaF(static_cast<float>(outline_alpha));
    return QPen(colour, 1);
}

/// Returns the contrast of two colours, from 1 to 21, as WCAG 2.1 defines it.
double contrast(const QColor& a, const QColor& b) {
    const auto luminance = [](const QColor& colour) {
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
    };
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

QColor mixed(const QColor& a, const QColor& b, double part_of_b) {
    const auto mix = [&](int x, int y) { return static_cast<int>(std::lround(x + (y - x) * part_of_b)); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

/// Makes the texts of controls that are off faint, but still readable.
void fade_disabled_texts(QPalette& palette) {
    struct Pair {
        QPalette::ColorRole text, ground;
    };
    constexpr double step = 0.05, faintest = 0.5;
    for (const Pair& pair : {Pair{QPalette::WindowText, QPalette::Window}, Pair{QPalette::Text, QPalette::Base},
                             Pair{QPalette::ButtonText, QPalette::Button}}) {
        const QColor text = palette.color(QPalette::Active, pair.text);
        const QColor ground = palette.color(QPalette::Active, pair.ground);
        const QColor window = palette.color(QPalette::Active, QPalette::Window);
        double faint = faintest;
        while (faint > 0 && std::min(contrast(mixed(text, ground, faint), ground),
                                     contrast(mixed(text, ground, faint), window)) < readable) {
            faint -= step;
        }
        palette.setColor(QPalette::Disabled, pair.text, mixed(text, ground, std::max(faint, 0.0)));
    }
}

}  // namespace

void ClearStyle::polish(QPalette& palette) {
    QProxyStyle::polish(palette);
    fade_disabled_texts(palette);
    const QColor base = palette.base().color(), text = palette.text().color();
    if (contrast(palette.alternateBase().color(), text) < readable) {
        palette.setColor(QPalette::AlternateBase, mixed(base, text, 0.06));
    }
    for (const QPalette::ColorRole role : {QPalette::Link, QPalette::LinkVisited}) {
        const QColor link = palette.color(role);
        if (contrast(link, base) < readable) palette.setColor(role, mixed(link, text, 0.6));
    }
}

void ClearStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    if (element != PE_FrameFocusRect) QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool is_frame = element == PE_FrameLineEdit || element == PE_Frame || element == PE_FrameFocusRect ||
                          (element == PE_PanelButtonCommand && has_focus(*option));
    const bool is_round = element == PE_IndicatorRadioButton;
    if (!is_frame && !is_round && element != PE_IndicatorCheckBox) return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QPen pen = outline_pen(*option);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    const double inset = pen.widthF() / 2;
    const QRectF area = QRectF(option->rect).adjusted(inset, inset, -inset, -inset);
    const double radius = is_round ? area.width() / 2 : corner;
    painter->drawRoundedRect(area, radius, radius);
    painter->restore();
}

QSize ClearStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                   const QWidget* widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type == CT_PushButton) size.rwidth() += option->fontMetrics.averageCharWidth() * 2;
    return size;
}

}  // namespace quill::desktop
