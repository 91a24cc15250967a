#include "desktop/view_fixture.h"
#include "desktop/viewer/column_view.h"
#include "desktop/viewer/frame_view.h"
#include "desktop/viewer/open_pictures_view.h"
#include "desktop/viewer/picture_view.h"
#include "desktop/viewer/pictures_window_view.h"
#include "files/directory.h"
#include "support/temporary_directory.h"
#include "viewer/connect.h"
#include "viewer/open_document.h"

#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QScrollBar>
#include <QWheelEvent>

#include <set>

namespace quill::tests {
namespace {

using controls::run;

/// The viewer's windows with their views, on a scripted machine.
class Viewer : public ViewTest {
  protected:
    Viewer() {
        program.session.AppParentDir = dir.path();
        program.session.AppDir = dir.make_directory("program");
        program.session.FavListPath = dir.path("program/default.fpl");
        files::change_directory(dir.path());
        views.add<viewer::frmMDI, desktop::FrameView>(desk);
        views.add<viewer::frmPic, desktop::PictureView>(desk);
        views.add<viewer::tittwo, desktop::ColumnView>(desk);
        views.add<viewer::frmOpen, desktop::OpenPicturesView>(desk);
        views.add<viewer::SavPic, desktop::PicturesWindowView>();
        viewer::provide_viewer(program.context);
    }
    ~Viewer() override { views.close_all(); }

    FakePictures& pictures() { return program.platform.fake_pictures; }

    std::string picture(const std::string& name, int width = 40, int height = 30) {
        const std::string path = dir.write(name, "pixels");
        pictures().set(path, plain_picture(width, height, 0xFF336699));
        return path;
    }

    /// Lets the program run `action`, decode the requested pictures, and draw.
    void act(const controls::Action& action) {
        events.hand_in(action);
        settle();
    }
    void settle() {
        for (int i = 0; i < 3; ++i) {
            events.hand_in([this] { pictures().answer_all(); });
            QCoreApplication::processEvents();
        }
    }

    viewer::frmPic& open(const std::string& path) {
        act([&] { viewer::opendoc(program.context, path, path); });
        return *program.session.PicsTable.back();
    }

    viewer::tittwo& column(int count) {
        for (int i = 0; i < count; ++i) picture("photos/" + std::to_string(1000 + i) + ".png");
        act([&] { program.routes.show_directory(dir.path("photos")); });
        return *program.windows.loaded<viewer::tittwo>();
    }

    desktop::ThumbnailGrid& grid(viewer::tittwo& w) { return *widget<desktop::ThumbnailGrid>(w, "thumbnails"); }

    /// Every visible control has something on the screen that states its role.
    template <class W>
    void expect_drawn(W& window, const std::set<std::string>& parts) {
        visit_controls(window, [&](const std::string& name, const char*, controls::Control& control) {
            const std::string array = name.substr(0, name.find('('));
            if (!control.visible || parts.contains(array)) return;
            EXPECT_NE(frame_of(window).template findChild<QObject*>(QString::fromStdString(name)), nullptr) << name;
        });
    }

    std::vector<std::string> bar() {
        std::vector<std::string> texts;
        for (const QAction* action : desk.frame->menuBar()->actions()) {
            texts.push_back(action->text().remove(QLatin1Char('&')).toStdString());
        }
        return texts;
    }

    TemporaryDirectory dir;
    desktop::ViewerDesk desk;
};

TEST_F(Viewer, WindowsDrawTheirControls) {
    auto& list = column(2);
    expect_drawn(list, {"Image7", "VScroll1", "Timer1"});
    expect_drawn(open(dir.path("photos/1000.png")), {"HScroll1", "VScroll1", "frame_time"});
    act([&] { program.routes.open_pictures(); });
    expect_drawn(*program.windows.loaded<viewer::frmOpen>(), {});
    act([&] { program.routes.open_favorites(); });
    expect_drawn(*program.windows.loaded<viewer::SavPic>(),
                 {"Picture5", "Picture6", "Label2", "Picture3", "Picture2", "Label5", "doing"});
}

TEST_F(Viewer, MenuBarIsThatOfTheActiveWindow) {
    auto& list = column(2);
    EXPECT_EQ(bar(), (std::vector<std::string>{"File", "View", "Favorites", "Help"}));
    auto& w = open(dir.path("photos/1000.png"));
    EXPECT_EQ(bar(), (std::vector<std::string>{"File", "Zoom In", "Zoom Out", "Zoom Level", "Favorites", "Adust",
                                               "Window", "Help"}));
    grid(list).setFocus();
    QCoreApplication::processEvents();
    EXPECT_EQ(bar().size(), 4U);
    EXPECT_TRUE(list.Timer1.enabled);
    act(w.close);
    act(w.context.windows.loaded<viewer::frmMDI>()->close);
    EXPECT_EQ(program.windows.loaded<viewer::tittwo>(), nullptr);
}

TEST_F(Viewer, PictureIsShownInAWindowOfItsSizeWithoutScrollBars) {
    column(1);
    auto& w = open(picture("photos/big.png", 300, 200));
    auto* pane = widget<desktop::PicturePane>(w, "Picture1");
    ASSERT_NE(pane, nullptr);
    EXPECT_EQ(pane->viewport()->size(), QSize(300, 200));
    act([&] { viewer::set_zoom_level(w, 13); });
    EXPECT_EQ(pane->horizontalScrollBar()->maximum(), 600 - pane->viewport()->width());
    pane->horizontalScrollBar()->setValue(100);
    EXPECT_EQ(w.HScroll1.value, 101U);
    EXPECT_EQ(w.Image1.left, -101);
    act(w.f(8).click);
    EXPECT_EQ(pane->horizontalScrollBar()->maximum(), 0);
}

TEST_F(Viewer, KeysAndWheelWorkOnThePicture) {
    column(3);
    auto& w = open(dir.path("photos/1000.png"));
    auto* pane = widget<desktop::PicturePane>(w, "Picture1");
    const auto key = [&](int code) {
        press(pane, code);
        settle();
    };
    key(Qt::Key_PageDown);
    EXPECT_EQ(w.path, dir.path("photos/1001.png"));
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(w.path, dir.path("photos/1002.png"));
    key(Qt::Key_Left);
    EXPECT_EQ(w.path, dir.path("photos/1001.png"));
    key(Qt::Key_1);
    key(Qt::Key_Plus);
    EXPECT_FLOAT_EQ(w.Image1.width, 44);
    key(Qt::Key_1);
    EXPECT_FLOAT_EQ(w.Image1.width, 40);
    QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), {}, QPoint(0, 120), Qt::NoButton, Qt::ControlModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(pane->viewport(), &wheel);
    EXPECT_GT(w.Image1.width, 44);
    key(Qt::Key_F11);
    EXPECT_TRUE(w.full_screen && desk.frame->isFullScreen());
    key(Qt::Key_Escape);
    EXPECT_FALSE(w.full_screen || desk.frame->isFullScreen());
    QMouseEvent twice(QEvent::MouseButtonDblClick, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(pane->viewport(), &twice);
    settle();
    EXPECT_EQ(program.session.PicsTable.front(), nullptr);
}

TEST_F(Viewer, WindowsAreTiledCascadedAndPutBehindTabs) {
    column(2);
    auto& first = open(dir.path("photos/1000.png"));
    auto& second = open(dir.path("photos/1001.png"));
    act(first.tile.click);
    const QRect a = desk.frame->windows()[0]->geometry(), b = desk.frame->windows()[1]->geometry();
    EXPECT_FALSE(a.intersects(b));
    EXPECT_GT(first.width, 300 * 15) << "the window's state follows";
    act(second.tabs.click);
    EXPECT_EQ(desk.frame->area().viewMode(), QMdiArea::TabbedView);
    act(second.cascade.click);
    EXPECT_EQ(desk.frame->area().viewMode(), QMdiArea::SubWindowView);
    EXPECT_TRUE(desk.frame->windows()[0]->geometry().intersects(desk.frame->windows()[1]->geometry()));
}

TEST_F(Viewer, ColumnShowsAllRowsAndAsksForThoseInSight) {
    auto& w = column(200);
    auto& list = grid(w);
    EXPECT_EQ(list.model()->rowCount(), 200);
    EXPECT_LT(pictures().log.size(), 100U);
    list.verticalScrollBar()->setValue(list.verticalScrollBar()->maximum());
    settle();
    EXPECT_NE(w.thumbnails.find(dir.path("photos/1199.png")), nullptr);
    EXPECT_EQ(w.VScroll1.value, std::min(w.VScroll1.maximum, w.sight->first));
    act([&] { viewer::choose_tab(w, 1); });
    EXPECT_EQ(list.model()->rowCount(), 0);
    act([&] { viewer::choose_tab(w, 0); });
    EXPECT_EQ(list.verticalScrollBar()->value(), 0);
}

TEST_F(Viewer, KeysWorkInTheColumn) {
    auto& w = column(3);
    auto& list = grid(w);
    list.setCurrentIndex(list.model()->index(1, 0));
    press(&list, Qt::Key_Return);
    settle();
    ASSERT_EQ(program.session.PicsTable.size(), 1U);
    EXPECT_EQ(program.session.PicsTable[0]->path, dir.path("photos/1001.png"));
    program.platform.expect_question("trash", true);
    press(&list, Qt::Key_Delete);
    settle();
    EXPECT_FALSE(dir.has("photos/1001.png"));
    EXPECT_EQ(list.model()->rowCount(), 2);
}

TEST_F(Viewer, ADoubleClickOnAThumbnailOpensOneWindow) {
    auto& w = column(2);
    auto& list = grid(w);
    const QPointF at = list.visualRect(list.model()->index(0, 0)).center();
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick,
                                    QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, at, list.viewport()->mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        QCoreApplication::sendEvent(list.viewport(), &event);
        settle();
    }
    EXPECT_EQ(program.session.PicsTable.size(), 1U);
}

TEST_F(Viewer, OpenerPreviewsAndOpensByEnter) {
    picture("a.jpg", 100, 80);
    picture("b.jpg");
    act([&] { program.routes.open_pictures(); });
    auto& w = *program.windows.loaded<viewer::frmOpen>();
    auto* files = widget<QListWidget>(w, "File1");
    press(files, Qt::Key_B);  // by the first letter of its name
    settle();
    EXPECT_EQ(w.File1.selected_item(), "b.jpg");
    files->setCurrentRow(0);
    settle();
    EXPECT_EQ(w.note.text, "100 x 80 pixels");
    press(files, Qt::Key_Return);
    settle();
    EXPECT_EQ(program.windows.loaded<viewer::frmOpen>(), nullptr);
    ASSERT_EQ(program.session.PicsTable.size(), 1U);
    EXPECT_TRUE(program.session.PicsTable[0]->visible);
}

}  // namespace
}  // namespace quill::tests
