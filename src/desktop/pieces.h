#pragma once

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>

/// Small widgets that several views are built of. Their sizes follow the font.
namespace quill::desktop {

/// A text that is never read as markup.
QLabel* plain_label(const QString& text = {});

/// A text that wraps, `growth` times as large as usual.
QLabel* text_label(double growth = 1.0, bool bold = false);

/// A button that Enter presses as well as the space bar.
QPushButton* push_button();

/// Gives an action its text, and a tool tip of its own: Qt makes one of the text that it may read as markup.
void set_text(QAction& action, const QString& text);

/// `content` with a vertical scroll bar where the window is too small for it.
QScrollArea* scrolling(QWidget* content);

/// The font of texts whose columns count, no smaller than that of all others.
QFont fixed_font();

/// Gives `window`, which is not shown yet, the size `wanted` in the middle of its screen, where there is room for it.
void place_centred(QWidget& window, QSize wanted);

/// The height of a line of usual text, of which margins and spaces are made.
int line_height();

}  // namespace quill::desktop
