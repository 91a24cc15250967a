#pragma once

#include <QProxyStyle>

namespace quill::desktop {

/// Qt's own style made clearer. In a dark theme that draws the outlines of fields, lists, radio buttons and check boxes
/// in the colour of the window; it marks the focus faintly, and its buttons grow too little with the font. A theme that
/// leaves out the colours of links and of every second row gets some that can be read.
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
