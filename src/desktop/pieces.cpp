#include "desktop/pieces.h"

#include "desktop/shown_text.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QLayout>
#include <QScreen>

#include <algorithm>

namespace quill::desktop {

QLabel* plain_label(const QString& text) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    return label;
}

QLabel* text_label(double growth, bool bold) {
    QLabel* label = plain_label();
    label->setWordWrap(true);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * growth);
    font.setBold(bold);
    label->setFont(font);
    return label;
}

QFont fixed_font() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(std::max(font.pointSizeF(), QApplication::font().pointSizeF()));
    return font;
}

void place_centred(QWidget& window, QSize wanted) {
    const QRect screen = window.screen()->availableGeometry();
    QRect area(QPoint(), wanted.boundedTo(screen.size() * 0.9));
    area.moveCenter(screen.center());
    window.setGeometry(area);
}

void set_text(QAction& action, const QString& text) {
    action.setText(text);
    action.setToolTip(tool_tip(text));
}

QPushButton* push_button() {
    auto* button = new QPushButton;
    button->setAutoDefault(true);
    return button;
}

QScrollArea* scrolling(QWidget* content) {
    auto* area = new QScrollArea;
    if (QLayout* layout = content->layout()) {
        QMargins margins = layout->contentsMargins();
        margins.setRight(margins.right() + line_height() / 2);  // room beside the scroll bar
        layout->setContentsMargins(margins);
    }
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    return area;
}

int line_height() {
    return QFontMetrics(QApplication::font()).height();
}

}  // namespace quill::desktop
