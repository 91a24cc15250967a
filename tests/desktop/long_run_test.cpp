#include "shell/long_run.h"

#include "desktop/application.h"
#include "desktop/main_window_view.h"
#include "desktop/qt_platform.h"
#include "desktop/view_fixture.h"
#include "shell/main_workflow.h"

#include <QAbstractButton>
#include <QCloseEvent>

namespace quill::tests {
namespace {

/// Input to the main window during a long run.
class LongRunInput : public ViewTest {
  protected:
    /// Drops the events that the program's application drops.
    class Filter final : public QObject {
      public:
        explicit Filter(desktop::EventLoop& events) : events_(events) { qApp->installEventFilter(this); }
        bool eventFilter(QObject* receiver, QEvent* event) override {
            return desktop::is_dropped(events_, receiver, *event);
        }

      private:
        desktop::EventLoop& events_;
    };

    LongRunInput() {
        views.add<shell::swit, desktop::MainWindowView>();
        w.apt(4).click = [this] { done.emplace_back("option"); };
        w.close = [this] { done.emplace_back("close"); };
    }

    static void post_click(QWidget* widget) {
        const QPointF centre = widget->rect().center();
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QCoreApplication::postEvent(widget, new QMouseEvent(type, centre, widget->mapToGlobal(centre),
                                                                Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
        }
    }
    static void post_key(QWidget* widget, int key) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QCoreApplication::postEvent(widget, new QKeyEvent(type, key, Qt::NoModifier));
        }
    }

    /// Performs a long run during which `input` arrives; returns true if that stopped it.
    bool stopped_by(const std::function<void()>& input) {
        bool stopped = false;
        events.hand_in([&] {
            shell::LongRun run(program.platform, run_panel(w), "Decoding");
            views.sync_all();
            input();
            events.breathe();
            events.hand_in([&] { done.emplace_back("next"); });
            stopped = run.stopped();
        });
        return stopped;
    }

    shell::swit& w = program.main_window;
    Filter filter{events};
    std::vector<std::string> done;
};

using Done = std::vector<std::string>;

TEST_F(LongRunInput, OnlyStopAndEscapeDoSomething) {
    EXPECT_FALSE(stopped_by([&] {
        post_click(widget(w, "apt(4)"));
        post_key(&frame_of(w), Qt::Key_4);
        post_key(widget(w, "stop"), Qt::Key_4);
        QMetaObject::invokeMethod(
            &filter, [&] { events.hand_in(w.apt(4).click); }, Qt::QueuedConnection);
    }));
    EXPECT_EQ(done, Done{"next"});
    EXPECT_TRUE(stopped_by([&] { post_click(widget(w, "stop")); }));
    for (const char* focused : {"apt(4)", "stop"}) {
        EXPECT_TRUE(stopped_by([&] { post_key(widget(w, focused), Qt::Key_Escape); })) << focused;
    }
    EXPECT_TRUE(stopped_by([&] { post_key(widget(w, "stop"), Qt::Key_Space); }));
    EXPECT_EQ(done, Done(5, "next"));
    EXPECT_FALSE(widget(w, "stop")->isVisible());
    widget<QAbstractButton>(w, "apt(4)")->click();
    EXPECT_EQ(done.back(), "option");
}

TEST_F(LongRunInput, ClosingTheWindowStopsTheRunFirst) {
    EXPECT_TRUE(stopped_by([&] { QCoreApplication::postEvent(&frame_of(w), new QCloseEvent); }));
    EXPECT_EQ(done, (Done{"next", "close"}));
}

TEST_F(LongRunInput, AWindowThatARunOpensIsDrawn) {
    desktop::ViewDisplay display(events, views);
    EXPECT_EQ(views.view_of(w), nullptr);
    events.hand_in([&] {
        while (events.running_for() < 1000 && views.view_of(w) == nullptr) display.repaint(w);
        EXPECT_NE(views.view_of(w), nullptr);
    });
}

}  // namespace
}  // namespace quill::tests
