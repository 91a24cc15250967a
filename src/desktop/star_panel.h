#pragma once

#include "shell/star_field.h"

#include <QTimer>
#include <QWidget>

#include <functional>

namespace quill::desktop {

/// The dark panel behind the options. It draws the stars in motion between two steps, so that few steps make a smooth
/// movement.
class StarPanel final : public QWidget {
  public:
    explicit StarPanel(shell::StarField& field, QWidget* parent = nullptr);
    ~StarPanel() override;

    static constexpr int step_time = 140;  ///< milliseconds of one step's movement

    /// Handles a step of the stars.
    void step();

    /// Is called when the pointer moves over an otherwise empty part of the panel.
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

/// Returns true if the user's desktop asks for no moving decoration.
bool wants_still_pictures(const QWidget& widget);

}  // namespace quill::desktop
