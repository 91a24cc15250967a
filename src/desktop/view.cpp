#include "desktop/view.h"

#include "desktop/shown_text.h"
#include "desktop/stop_button.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLayout>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace quill::desktop {
namespace {

constexpr int twips_per_pixel = 15;
constexpr double usual_font_height = 17;  // pixels of the font for which the specified sizes were made

}  // namespace

/// Passes on the closing of a window: the program decides whether it closes.
class View::CloseFilter final : public QObject {
  public:
    explicit CloseFilter(View& view) : QObject(view.frame_), view_(view) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Close) return QObject::eventFilter(watched, event);
        event->ignore();
        if (view_.events_.breathing()) {
            press_stop_button();
            view_.events_.hand_in_later([&view = view_, frame = view_.frame_] {
                if (frame) view.hand_in(view.window_.close);
            });
        } else {
            view_.hand_in(view_.window_.close);
        }
        return true;
    }

  private:
    View& view_;
};

View::View(controls::Window& window, QWidget* frame, EventLoop& events)
    : window_(window), frame_(frame), events_(events) {
    frame->installEventFilter(new CloseFilter(*this));
    frame->setAttribute(Qt::WA_KeyboardFocusChange);  // the focus shows from the beginning, not only after a Tab
}

View::~View() {
    destroy_frame();
}

void View::destroy_frame() {
    retired_ = true;
    delete frame_;
}

void View::retire() {
    retired_ = true;
    draws_.clear();
    for (QTimer* timer : frame_->findChildren<QTimer*>()) timer->stop();
    frame_->hide();
}

void View::hand_in(const controls::Action& action) {
    if (!retired_) events_.hand_in(action);
}

void View::sync() {
    if (retired_) return;
    for (const auto& draw : draws_) draw();
    sync_frame();
}

void View::sync_frame() {
    drawn_caption_.update(window_.caption, [&](const std::string& caption) {
        frame_->setWindowTitle(caption.empty() ? QStringLiteral("Quillbright Pro") : window_title(shown_name(caption)));
    });
    drawn_pointer_.update(window_.pointer, [&](controls::MousePointer pointer) {
        if (pointer == controls::MousePointer::busy) {
            frame_->setCursor(Qt::BusyCursor);
        } else {
            frame_->unsetCursor();
        }
    });
    drawn_visible_.update(window_.visible, [&](bool visible) { show_or_hide(visible); });
}

void View::show_or_hide(bool visible) {
    if (visible && !std::exchange(placed_, true)) place();
    frame_->setVisible(visible);
    if (!visible) return;
    grow_to_content();
    frame_->raise();
    frame_->activateWindow();
    on_shown();
}

QSize View::told_size() const {
    const double growth = std::max(1.0, frame_->fontMetrics().height() / usual_font_height);
    return QSize(window_.width, window_.height) / twips_per_pixel * growth;
}

void View::place() {
    frame_->ensurePolished();
    const QSize wanted = best_size().expandedTo(frame_->sizeHint());
    const QRect screen = frame_->screen()->availableGeometry();
    const QSize size = wanted.boundedTo(screen.size() * 0.95);
    const QWidget* before = QApplication::activeWindow();
    QRect area(QPoint(), size);
    area.moveCenter(before != nullptr ? before->geometry().center() : screen.center());
    const int left = std::clamp(area.left(), screen.left(), std::max(screen.left(), screen.right() - size.width()));
    const int top = std::clamp(area.top(), screen.top(), std::max(screen.top(), screen.bottom() - size.height()));
    frame_->setGeometry(left, top, size.width(), size.height());
}

void View::grow_to_content() {
    const QLayout* layout = frame_->layout();
    if (layout == nullptr || !layout->hasHeightForWidth()) return;
    const int most = static_cast<int>(frame_->screen()->availableGeometry().height() * 0.95);
    const int needed = std::min(most, layout->totalHeightForWidth(frame_->width()));
    if (needed > frame_->height()) frame_->resize(frame_->width(), needed);
}

void View::adopt(const controls::Control& control, QObject* object) {
    const Named& named = names_.at(&control);
    object->setObjectName(shown(named.name));
    if (auto* widget = qobject_cast<QWidget*>(object)) widget->setAccessibleName(shown(named.role));
}

void View::bind_state(const controls::Control& control, QWidget* widget) {
    on_sync([&control, widget, visible = Drawn<bool>(), enabled = Drawn<bool>()]() mutable {
        enabled.update(control.enabled, [&](bool is) { widget->setEnabled(is); });
        visible.update(control.visible, [&](bool is) { widget->setVisible(is); });
    });
}

void View::bind(controls::Timer& timer, QWidget* widget, int at_least) {
    auto* clock = new QTimer(frame_);
    QObject::connect(clock, &QTimer::timeout, frame_, [this, &timer, widget] {
        if (timer.enabled && widget->isVisible() && !frame_->isMinimized()) hand_in(timer.tick);
    });
    on_sync([&timer, clock, at_least] {
        const int interval = std::max(timer.interval, at_least);
        const bool runs = timer.enabled && timer.interval > 0;
        if (runs && (!clock->isActive() || clock->interval() != interval)) clock->start(interval);
        if (!runs && clock->isActive()) clock->stop();
    });
}

}  // namespace quill::desktop
