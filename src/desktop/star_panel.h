#pragma once

#include "shell/star_field.h"

#include <QTimer>
#include <QWidget>

#include <functional>

namespace quill::desktop {

/// The dark panel behind the options. Between two steps of the stars it draws them on their way, so that few steps make
/// a calm movement.
class StarPanel final : public QWidget {
  public:
    explicit StarPanel(shell::StarField& field, QWidget* parent = nullptr);
    ~StarPanel() override;

    static constexpr int step_time = 140;  ///< milliseconds that the way of one step takes

    /// The stars have moved a step.
    void step();

    /// Called when the pointer moves over a part of the panel that is nothing else.
    std::function<void()> reached;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    struct Shown {
        QPointF from, to;   ///< pixels
        bool fresh = true;  ///< appears instead of moving
        bool drawn = false;
    };

    bool is_black(int x, int y) const;
    QPointF place_of(const shell::Star& star) const;
    qreal way() const;
    void animate();
    void paint_star(QPainter& painter, const Shown& star, qreal way) const;
    QRect area_of(const Shown& star) const;

    shell::StarField& field_;
    std::array<Shown, shell::StarField::count> stars_;
    QTimer clock_;
    int frame_ = 0;
};

/// Whether the user's desktop asks for no moving decoration.
bool wants_still_pictures(const QWidget& widget);

}  // namespace quill::desktop
