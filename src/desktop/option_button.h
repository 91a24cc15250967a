#pragma once

#include <QAbstractButton>
#include <QColor>

#include <functional>

namespace quill::desktop {

/// A large clickable text, wrapped to its width, with an optional number in front. It can be reached by the keyboard
/// and clearly shows when it has the focus.
class OptionButton final : public QAbstractButton {
  public:
    /// How it contrasts with its background.
    enum class Look {
        on_stars,  ///< bare text in its own colour on the dark panel
        card       ///< a framed area in the colours of the desktop
    };

    explicit OptionButton(Look look, QWidget* parent = nullptr);

    /// Sets the text; an ampersand in it has no special meaning.
    void set_caption(const QString& caption);
    const QString& caption() const { return caption_; }

    /// Sets a number or a sign before the text; empty for none.
    void set_mark(const QString& mark);
    void set_colour(const QColor& colour);

    /// Is called when the pointer enters it or it gets the focus, and when both have left.
    std::function<void()> reached;
    std::function<void()> left;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    int padding() const;
    int mark_size() const;
    QRect text_area(const QRect& whole) const;
    QRect text_rect(int width) const;
    void paint_background(QPainter& painter) const;
    void paint_mark(QPainter& painter) const;

    Look look_;
    QString caption_;
    QString mark_;
    QColor colour_;
};

}  // namespace quill::desktop
