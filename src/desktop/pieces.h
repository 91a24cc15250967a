#pragma once

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>

/// Small widgets shared by several views. Their sizes follow the font.
namespace quill::desktop {

/// Makes a text that is never read as markup.
QLabel* plain_label(const QString& text = {});

/// Makes a text that wraps, `growth` times as large as usual.
QLabel* text_label(double growth = 1.0, bool bold = false);

/// Makes a button that Enter presses as well as the space bar.
QPushButton* push_button();

/// Sets an action's text, and its own tool tip: Qt makes one of the text that it may read as markup.
void set_text(QAction& action, const QString& text);

/// Returns `content` with a vertical scroll bar if the window is too small for it.
QScrollArea* scrolling(QWidget* content);

/// Returns the font of texts with aligned columns, no smaller than that of all others.
QFont fixed_font();

/// Gives `window`, which is not shown yet, the size `wanted` in the middle of its screen, if there is room for it.
void place_centred(QWidget& window, QSize wanted);

/// Returns the height of a line of usual text, the unit of margins and spaces.
int line_height();

}  // namespace quill::desktop
