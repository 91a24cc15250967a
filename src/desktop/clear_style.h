#pragma once

#include <QProxyStyle>

namespace quill::desktop {

/// Qt's own style with more contrast. In a dark theme that draws the outlines of fields, lists, radio buttons and check
/// boxes in the colour of the window; it marks the focus faintly, and its buttons grow too little with the font. A
/// theme without colours for links and alternate rows gets readable ones.
class ClearStyle final : public QProxyStyle {
  public:
    ClearStyle() : QProxyStyle(QStringLiteral("fusion")) {}

    void polish(QPalette& palette) override;
    using QProxyStyle::polish;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
};

}  // namespace quill::desktop
