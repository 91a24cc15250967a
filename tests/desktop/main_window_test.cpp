#include "desktop/main_window_view.h"
#include "desktop/shown_text.h"
#include "desktop/view_fixture.h"
#include "shell/main_workflow.h"
#include "support/temporary_directory.h"

#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QProgressBar>
#include <QTreeView>

namespace quill::tests {
namespace {

/// The main window from the user's view.
class MainWindow : public ViewTest {
  protected:
    MainWindow() {
        views.add<shell::swit, desktop::MainWindowView>();
        shell::connect_main_window(program.context);
        views.sync_all();
    }

    /// Opens the results panel on the named files.
    void show_results(const std::vector<std::string>& names) {
        for (const std::string& name : names) w.List3.add(name);
        w.Picture2.visible = true;
        views.sync_all();
        list = widget<QTreeView>(w, "List3");
    }

    QVariant cell(int row, int column, int role = Qt::DisplayRole) const {
        return list->model()->index(row, column).data(role);
    }

    shell::swit& w = program.main_window;
    QTreeView* list = nullptr;
};

TEST_F(MainWindow, NumberKeyRunsItsOptionOnlyWhereThatIsShown) {
    std::vector<int> clicked;
    w.opt.for_each([&](int i, controls::Label& label) { label.click = [&clicked, i] { clicked.push_back(i); }; });
    for (const int key : {Qt::Key_2, Qt::Key_3, Qt::Key_6, Qt::Key_9, Qt::Key_5}) press(&frame_of(w), key);
    press(&frame_of(w), Qt::Key_1, Qt::ControlModifier);
    w.Picture4.visible = true;
    views.sync_all();
    press(&frame_of(w), Qt::Key_1);
    EXPECT_EQ(clicked, (std::vector{2, 5}));
}

TEST_F(MainWindow, OptionTakesItsColourFromThePointerAndTheKeyboard) {
    const controls::Colour rest = w.opt(1).colour;
    auto* option = widget(w, "apt(1)");
    QEnterEvent enter({}, {}, {});
    QCoreApplication::sendEvent(option, &enter);
    EXPECT_EQ(w.apt(1).colour, (controls::Colour{0, 255, 0}));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(option, &leave);
    EXPECT_EQ(w.apt(1).colour, rest);
    QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(widget(w, "apt(2)"), &focus);
    EXPECT_EQ(w.apt(2).colour, (controls::Colour{0xFF, 0xC0, 0xC0}));
}

TEST_F(MainWindow, FileNamesWithAmpersandsAreShownAsTheyAre) {
    w.apt(1).text = "Decode/open A&B.mim";
    views.sync_all();
    EXPECT_EQ(widget<desktop::OptionButton>(w, "apt(1)")->caption(), QStringLiteral("Decode/open A&B.mim"));
}

TEST_F(MainWindow, DroppedFileIsHandedIn) {
    std::string dropped;
    static_cast<desktop::MainWindowView*>(views.view_of(w))->dropped = [&](const std::string& path) { dropped = path; };
    QMimeData data;
    data.setUrls({QUrl::fromEncoded("file:///home/ada/two%20words%20%E4.mim")});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&frame_of(w), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&frame_of(w), &drop);
    EXPECT_EQ(dropped, "/home/ada/two words \xE4.mim");
}

TEST_F(MainWindow, ResultsTellNameSizeAndCondition) {
    const TemporaryDirectory here;
    here.write("good.txt", "hello");
    here.write("poor.bin", "hel");
    const codec::Problem differs{.kind = codec::ProblemKind::bad_crc, .text = "the checksum differs"};
    w.Results = {{here.path(), codec::Outcome{codec::Verdict::verified, 5, {}}},
                 {here.path(), codec::Outcome{codec::Verdict::damaged, 3, {differs, differs, differs}}}};
    show_results({"good.txt", "poor.bin", "gone.txt"});

    EXPECT_EQ(cell(0, 0).toString(), QStringLiteral("good.txt"));
    EXPECT_TRUE(cell(0, 1).toString().startsWith(QStringLiteral("5")));
    EXPECT_EQ(cell(0, 2).toString(), QStringLiteral("Verified"));
    EXPECT_EQ(cell(1, 2).toString(), QStringLiteral("Damaged"));
    EXPECT_EQ(cell(1, 2, Qt::ToolTipRole).toString().count(QStringLiteral("the checksum differs")), 1);
    EXPECT_FALSE(cell(1, 2, Qt::DecorationRole).value<QIcon>().isNull());
    EXPECT_EQ(cell(2, 2).toString(), QStringLiteral("Gone"));
}

TEST_F(MainWindow, FilesOfTheLatestRunComeFirstUnderTheirMessage) {
    for (const char* name : {"old.txt", "new.txt", "new too.txt"}) {
        const bool is_old = std::string_view(name) == "old.txt";
        w.List3.add(name);
        w.Results.push_back({"/tmp", {}, {}, is_old ? "old.eml" : "new.eml", is_old ? 1U : 2U});
    }
    w.List3.selected = 1;
    show_results({});
    EXPECT_EQ(cell(0, 0).toString(), QStringLiteral("new.txt"));
    EXPECT_EQ(cell(2, 0).toString(), QStringLiteral("old.txt"));
    EXPECT_EQ(cell(2, 3).toString(), QStringLiteral("old.eml"));
    EXPECT_EQ(list->currentIndex().row(), 0);
    press(list, Qt::Key_End);
    EXPECT_EQ(w.List3.selected, 0U) << "the oldest file is the last one shown";
    w.List3.remove(0);
    w.Results.erase(w.Results.begin());
    views.sync_all();
    EXPECT_TRUE(list->isColumnHidden(3)) << "one message needs no column";
}

TEST_F(MainWindow, ResultIsDraggedOutAsItsFileUnlessItIsGone) {
    const TemporaryDirectory here;
    here.write("a b.txt", "hello");
    w.Results = {{here.path(), {}}, {here.path(), {}}};
    show_results({"a b.txt", "gone.txt"});
    const QAbstractItemModel* model = list->model();
    const std::unique_ptr<QMimeData> data(model->mimeData({model->index(0, 0), model->index(0, 1)}));
    ASSERT_TRUE(data);
    EXPECT_EQ(data->urls(), QList<QUrl>{desktop::file_url(here.path("a b.txt"))});
    EXPECT_FALSE(model->mimeData({model->index(1, 0)}));
}

TEST_F(MainWindow, LongListOfResultsReadsOnlyRowsInSightAndSharesTheirIcons) {
    std::vector<std::string> names;
    for (int i = 0; i < 3000; ++i) names.push_back(std::to_string(i) + ".kind" + std::to_string(i));
    show_results(names);
    const auto* model = static_cast<const desktop::ResultsModel*>(list->model());
    list->grab();
    const std::size_t in_sight = model->signs().made();
    EXPECT_GT(in_sight, 2U);
    EXPECT_LT(in_sight, 100U);
    for (std::size_t i = 0; i < names.size(); ++i) w.List3.replace(i, std::to_string(i) + ".kind");
    views.sync_all();
    for (int i = 0; i < 3000; ++i) EXPECT_FALSE(cell(i, 0, Qt::DecorationRole).value<QIcon>().isNull());
    EXPECT_LE(model->signs().made(), in_sight + 2);
}

TEST_F(MainWindow, KeysInTheResultsOpenRenameAndErase) {
    std::vector<std::string> done;
    w.List3.double_click = [&] { done.push_back("open " + w.List3.selected_item()); };
    w.Command5.click = [&] { done.push_back("rename"); };
    w.Command7.click = [&] { done.push_back("erase"); };
    show_results({"a.txt", "b.txt"});
    EXPECT_EQ(w.List3.selected, 1U) << "the newest result is ready to be opened";
    press(list, Qt::Key_Up);
    press(list, Qt::Key_Return);
    for (QAction* action : list->actions()) {
        if (action->shortcut() == QKeySequence(Qt::Key_F2)) action->trigger();
        if (action->shortcut() == QKeySequence(QKeySequence::Delete)) action->trigger();
    }
    EXPECT_EQ(done, (std::vector<std::string>{"open a.txt", "rename", "erase"}));
}

TEST_F(MainWindow, ResultsFollowTheListAndDisabledButtonsDisableTheirKeys) {
    show_results({"a.txt", "b.txt"});
    w.List3.replace(0, "c.txt");
    w.List3.remove(1);
    w.Command7.enabled = false;
    views.sync_all();
    ASSERT_EQ(list->model()->rowCount(), 1);
    EXPECT_EQ(cell(0, 0).toString(), QStringLiteral("c.txt"));
    EXPECT_FALSE(list->currentIndex().isValid());
    for (const QAction* action : list->actions()) {
        const bool erases = action->shortcut() == QKeySequence(QKeySequence::Delete);
        EXPECT_EQ(action->isEnabled(), !erases) << action->text().toStdString();
    }
}

TEST_F(MainWindow, ProgressBarShowsHowFarTheRunIs) {
    w.Picture5.visible = true;
    w.Picture6.left = w.Picture5.width / 2;
    views.sync(w);
    const auto* bar = widget<QProgressBar>(w, "Picture6");
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(bar->value() * 2, bar->maximum() - bar->maximum() % 2);
}

TEST_F(MainWindow, ChoicesOfTheWizardAreExclusiveInTheState) {
    w.Opti(3).chosen = true;
    w.Opti(1).click = {};
    w.Picture4.visible = true;
    views.sync_all();
    widget<QAbstractButton>(w, "Opti(1)")->click();
    EXPECT_TRUE(w.Opti(1).chosen);
    EXPECT_FALSE(w.Opti(3).chosen);
}

}  // namespace
}  // namespace quill::tests
