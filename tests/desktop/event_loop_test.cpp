#include "desktop/about_view.h"
#include "desktop/dialogs.h"
#include "desktop/view_fixture.h"
#include "shell/about_box.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QTimer>

#include <stdexcept>

namespace quill::tests {
namespace {

class DesktopEvents : public ViewTest {
  protected:
    shell::AboutBox& open_about_box() {
        views.add<shell::AboutBox, desktop::AboutView>();
        events.hand_in([this] { shell::show_about_box(program.context); });
        return *program.windows.loaded<shell::AboutBox>();
    }
};

TEST_F(DesktopEvents, ProcessEndStopsTheLoopAndAllLaterEvents) {
    events.hand_in([this] { program.platform.end_process(); });
    EXPECT_TRUE(events.ended());
    EXPECT_THROW(events.check_ended(), platform::ProcessEnd);
    bool ran = false;
    events.hand_in([&] { ran = true; });
    EXPECT_FALSE(ran);
    EXPECT_EQ(events.run(), 0);
}

TEST_F(DesktopEvents, EndedSessionIsFollowedByOneThatTakesEventsAgain) {
    int runs = 0;
    events.hand_in([&] { program.platform.end_session("x.txt was not decoded.", "/tmp/new.mim"); });
    events.hand_in([&] { ++runs; });
    const auto last = events.begin_again();
    ASSERT_TRUE(last);
    EXPECT_EQ(last->file, "/tmp/new.mim");
    events.hand_in([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    events.hand_in([&] { program.platform.end_process(); });
    EXPECT_FALSE(events.begin_again()) << "the user's own exit";
    EXPECT_TRUE(events.ended());
}

TEST_F(DesktopEvents, FailureOfAnActionIsReportedAndTheNextOneRuns) {
    events.hand_in([] { throw std::runtime_error("out of ink"); });
    EXPECT_EQ(failures, std::vector<std::string>{"out of ink"});
    bool ran = false;
    events.hand_in([&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST_F(DesktopEvents, EventWithinAnActionIsNotTheOutermost) {
    std::vector<bool> outermost;
    events.after_event = [&](bool is) { outermost.push_back(is); };
    events.hand_in([&] { events.hand_in([] {}); });
    EXPECT_EQ(outermost, (std::vector{false, true}));
}

TEST_F(DesktopEvents, ActionMayReplaceItself) {
    controls::Action action;
    int runs = 0;
    action = [&] {
        action = [] {};
        ++runs;
    };
    events.hand_in(action);
    EXPECT_EQ(runs, 1);
}

TEST_F(DesktopEvents, WindowMayUnloadItselfFromItsOwnButton) {
    const shell::AboutBox& window = open_about_box();
    const QPointer<QWidget> frame(&frame_of(window));
    ASSERT_TRUE(frame->isVisible());
    widget<QAbstractButton>(window, "Command1")->click();
    ASSERT_TRUE(frame) << "destroyed below its own click";
    EXPECT_FALSE(frame->isVisible());
    QCoreApplication::processEvents();
    EXPECT_FALSE(frame);
    EXPECT_EQ(program.windows.loaded<shell::AboutBox>(), nullptr);
}

TEST_F(DesktopEvents, ClosingTheFrameRunsTheActionAndLeavesTheRestToIt) {
    shell::AboutBox& window = open_about_box();
    int closings = 0;
    window.close = [&] { ++closings; };
    frame_of(window).close();
    EXPECT_EQ(closings, 1);
    EXPECT_TRUE(frame_of(window).isVisible());
}

TEST_F(DesktopEvents, WindowOpenedAgainAfterUnloadingGetsANewView) {
    open_about_box().Command1.click();
    views.sync_all();
    QCoreApplication::processEvents();
    const shell::AboutBox& again = open_about_box();
    EXPECT_TRUE(frame_of(again).isVisible());
}

TEST_F(DesktopEvents, MessagesAreShownWhole) {
    desktop::BoxDialogs dialogs(events, views);
    for (const std::string& text :
         {std::string("Done."), std::string(50, 'w'), std::string(300, 'w'),
          std::string("No file was selected, if you do not wish to select a file, click on the "
                      "Cancel button."),
          std::string("One\nTwo words ") + std::string(70, 'w') + "\nThree"}) {
        QObject while_shown;
        QTimer::singleShot(0, &while_shown, [&] {
            QWidget* box = QApplication::activeModalWidget();
            ASSERT_NE(box, nullptr);
            const auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
            const QRect needed = label->fontMetrics().boundingRect(
                QRect(0, 0, label->width(), 10'000), label->wordWrap() ? Qt::TextWordWrap : 0, label->text());
            EXPECT_LE(needed.width(), label->width()) << text;
            EXPECT_LE(needed.height(), label->height()) << text;
            box->close();
        });
        dialogs.message(text, {});
    }
}

}  // namespace
}  // namespace quill::tests
