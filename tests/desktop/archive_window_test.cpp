#include "zip/archive_window.h"

#include "archive/archive_builder.h"
#include "desktop/archive_table.h"
#include "desktop/archive_view.h"
#include "desktop/dialogs.h"
#include "desktop/view_fixture.h"
#include "shell/open_archive.h"
#include "support/temporary_directory.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>

#include <gmock/gmock.h>

namespace quill::tests {
namespace {

using desktop::ArchiveModel;
using ::testing::ElementsAre;

/// The archive window with its real view, on an archive in a separate directory.
class ArchiveWindowTest : public ViewTest {
  protected:
    zip::arcview& open(const std::string& archive) {
        dir.write("a.zip", archive);
        program.session.SelectedDir = dir.path();
        program.session.SelectedFile = "a.zip";
        program.session.WorkDir = program.main_window.Text1.text = dir.make_directory("temp");
        views.add<zip::arcview, desktop::ArchiveWindowView>();
        zip::provide_contents(program.context, archives);
        zip::provide_archive_window(program.context, archives);
        shell::openarchive(program.context);
        views.sync_all();
        return *program.windows.loaded<zip::arcview>();
    }
    desktop::ArchiveTable* table() {
        return widget<desktop::ArchiveTable>(*program.windows.loaded<zip::arcview>(), "List1");
    }
    std::vector<std::string> shown_names() {
        std::vector<std::string> names;
        for (int row = 0; row < table()->model()->rowCount(); ++row) {
            names.push_back(table()->model()->index(row, 0).data().toString().toStdString());
        }
        return names;
    }
    std::string cell(int row, int column) {
        return table()->model()->index(row, column).data().toString().toStdString();
    }

    TemporaryDirectory dir;
    zip::NewZIP archives{program.context};
};

std::string three_members() {
    return ArchiveBuilder().add("Pear", "22").add("apple", "1").add("d/Quince", "333").finish();
}

TEST_F(ArchiveWindowTest, ShowsEachMemberAsTheArchiveHasIt) {
    program.platform.expect_message("1 member is damaged");
    open(ArchiveBuilder().add("Letter.TXT", "dear").add("bad", "x", {.crc = 1}).add("d/", "").finish());
    EXPECT_THAT(shown_names(), ElementsAre("Letter.TXT", "bad", "d/"));
    EXPECT_THAT(cell(0, ArchiveModel::size_column), ::testing::StartsWith("4 bytes"));
    EXPECT_EQ(cell(0, ArchiveModel::method_column), "stored");
    EXPECT_EQ(cell(0, ArchiveModel::date_column), "2025-03-11 17:33");
    EXPECT_EQ(cell(0, ArchiveModel::condition_column), "Verified");
    EXPECT_EQ(cell(1, ArchiveModel::condition_column), "Damaged: its CRC is wrong");
    EXPECT_EQ(cell(2, ArchiveModel::condition_column), "");
}

TEST_F(ArchiveWindowTest, AClickOnAHeadingSortsAndKeepsTheSelection) {
    zip::arcview& w = open(three_members());
    w.List1.selected = 0;
    w.List1.selected_rows = {0, 2};
    views.sync_all();
    const struct {
        int column;
        Qt::SortOrder order;
        std::vector<std::string> names;
    } cases[] = {{ArchiveModel::name_column, Qt::AscendingOrder, {"apple", "d/Quince", "Pear"}},
                 {ArchiveModel::size_column, Qt::DescendingOrder, {"d/Quince", "Pear", "apple"}},
                 {-1, Qt::AscendingOrder, {"Pear", "apple", "d/Quince"}}};
    for (const auto& c : cases) {
        table()->header()->setSortIndicator(c.column, c.order);
        EXPECT_EQ(shown_names(), c.names);
        EXPECT_THAT(w.List1.chosen_rows(), ElementsAre(0U, 2U));
        EXPECT_EQ(table()->selectionModel()->selectedRows().size(), 2);
        EXPECT_EQ(table()->currentIndex().data().toString(), QStringLiteral("Pear"));
    }
}

TEST_F(ArchiveWindowTest, TypingFindsNamesWithAndWithoutTheirDirectories) {
    zip::arcview& w = open(three_members());
    const std::pair<const char*, std::size_t> typed[] = {{"ap", 1}, {"QUI", 2}, {"pe", 0}, {"d/q", 2}, {"zzz", 2}};
    for (const auto& [text, member] : typed) {
        table()->forget_typing();
        for (const char* letter = text; *letter != 0; ++letter) table()->keyboardSearch(QString(QLatin1Char(*letter)));
        EXPECT_EQ(w.List1.selected, member) << text;
    }
}

TEST_F(ArchiveWindowTest, ThePageFollowsSelectionAndScrolling) {
    ArchiveBuilder builder;
    for (int i = 0; i < 500; ++i) builder.add("F" + std::to_string(i), "");
    zip::arcview& w = open(builder.finish());
    table()->setCurrentIndex(table()->model()->index(40, 0));
    EXPECT_EQ(w.List1.selected, 40U);
    EXPECT_LE(w.ListTop, 40U);
    EXPECT_EQ(w.List7.selected_item(), w.List1.selected_item());
    table()->verticalScrollBar()->setValue(0);
    EXPECT_EQ(w.ListTop, 0U);
    table()->verticalScrollBar()->setValue(table()->verticalScrollBar()->maximum());
    EXPECT_GT(w.ListTop, 400U);
}

TEST_F(ArchiveWindowTest, SeveralRowsAreRemovedByTheKey) {
    zip::arcview& w = open(three_members());
    table()->selectAll();
    EXPECT_EQ(w.List1.chosen_rows().size(), 3U);
    program.platform.expect_question("remove 3 files", true);
    widget<QAction>(w, "remzip")->trigger();
    EXPECT_THAT(shown_names(), ElementsAre());
    EXPECT_TRUE(widget<QAction>(w, "undo")->isEnabled());
    widget<QAction>(w, "undo")->trigger();
    EXPECT_EQ(shown_names().size(), 3U);
    EXPECT_TRUE(failures.empty());
}

TEST_F(ArchiveWindowTest, ThePanelTakesColumnsAwayAndEscapeClosesIt) {
    zip::arcview& w = open(three_members());
    frame_of(w).resize(1600, 600);
    QAction* extract = widget<QAction>(w, "extract");
    for (const bool by_escape : {true, false}) {
        extract->trigger();
        EXPECT_TRUE(widget(w, "Picture2")->isVisible());
        EXPECT_TRUE(widget(w, "take_all")->isVisible());
        EXPECT_TRUE(table()->isColumnHidden(ArchiveModel::packed_column));
        EXPECT_FALSE(table()->isColumnHidden(ArchiveModel::condition_column));
        if (by_escape) {
            Q_EMIT frame_of(w).findChild<QShortcut*>()->activated();
        } else {
            widget<QAbstractButton>(w, "Command4")->click();
        }
        QCoreApplication::processEvents();
        EXPECT_FALSE(widget(w, "Picture2")->isVisible());
        EXPECT_FALSE(table()->isColumnHidden(ArchiveModel::packed_column));
    }
    EXPECT_TRUE(failures.empty());
}

TEST_F(ArchiveWindowTest, ANarrowWindowLeavesRoomForTheNames) {
    zip::arcview& w = open(three_members());
    const auto shown_columns = [&] {
        int shown = 0;
        for (int column = 0; column < ArchiveModel::column_count; ++column)
            shown += table()->isColumnHidden(column) ? 0 : 1;
        return shown;
    };
    frame_of(w).resize(1600, 600);
    EXPECT_EQ(shown_columns(), ArchiveModel::column_count);
    frame_of(w).resize(560, 600);
    QCoreApplication::processEvents();
    EXPECT_LT(shown_columns(), ArchiveModel::column_count);
    EXPECT_FALSE(table()->isColumnHidden(ArchiveModel::condition_column));
    EXPECT_GT(table()->columnWidth(ArchiveModel::name_column), 100);
    frame_of(w).resize(1600, 600);
    QCoreApplication::processEvents();
    EXPECT_EQ(shown_columns(), ArchiveModel::column_count);
}

TEST_F(ArchiveWindowTest, ANewFileNameKeepsTheExtensionUnlessItIsTypedOver) {
    desktop::BoxDialogs boxes(events, views);
    const std::pair<const char*, const char*> cases[] = {{"sea.png", "new.png"}, {"README", "new"}, {".rc", "new"}};
    for (const auto& [offered, answer] : cases) {
        QTimer::singleShot(0, [] {
            QWidget* box = QApplication::activeModalWidget();
            box->findChild<QLineEdit*>()->insert(QStringLiteral("new"));
            qobject_cast<QDialog*>(box)->accept();
        });
        EXPECT_EQ(boxes.input({.text = "Name?", .default_answer = offered, .is_file_name = true}), answer);
    }
}

TEST_F(ArchiveWindowTest, ABoxHasTheIconOfWhatItSays) {
    desktop::BoxDialogs boxes(events, views);
    const auto icon_of = [](const std::function<void()>& show) {
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QTimer::singleShot(0, [&icon] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            icon = box->icon();
            box->reject();
        });
        show();
        return icon;
    };
    EXPECT_EQ(icon_of([&] { boxes.message("Done.", {}); }), QMessageBox::Information);
    EXPECT_EQ(icon_of([&] { boxes.warn("It failed.", {}); }), QMessageBox::Warning);
    EXPECT_EQ(icon_of([&] { boxes.ask({.text = "Go on?"}); }), QMessageBox::Question);
    EXPECT_EQ(icon_of([&] { boxes.ask({.text = "Erase it?", .no_is_default = true}); }), QMessageBox::Critical);
}

TEST_F(ArchiveWindowTest, OneCharacterSetIsCheckedHoweverOftenItIsClicked) {
    zip::arcview& w = open(ArchiveBuilder().add("Gr\x81n", "1").finish());
    for (const char* set : {"names_in(3)", "names_in(3)", "names_in(1)", "names_in(0)"}) {
        widget<QAction>(w, set)->trigger();
        std::vector<std::string> checked;
        w.names_in.for_each([&](int i, controls::MenuItem&) {
            const std::string name = controls::member_name("names_in", i);
            if (widget<QAction>(w, name.c_str())->isChecked()) checked.push_back(name);
        });
        EXPECT_THAT(checked, ElementsAre(set));
    }
    EXPECT_THAT(shown_names(), ElementsAre("Gr\xC3\xBCn"));
}

TEST_F(ArchiveWindowTest, APasswordIsHiddenUntilItIsToBeShown) {
    desktop::BoxDialogs boxes(events, views);
    for (const bool secret : {true, false}) {
        QTimer::singleShot(0, [secret] {
            QWidget* box = QApplication::activeModalWidget();
            auto* line = box->findChild<QLineEdit*>();
            EXPECT_EQ(line->echoMode() == QLineEdit::Password, secret);
            for (auto* button : box->findChildren<QPushButton*>()) {
                if (!button->isCheckable()) continue;
                for (const auto mode : {QLineEdit::Normal, QLineEdit::Password}) {
                    button->click();
                    EXPECT_EQ(line->echoMode(), mode);
                }
            }
            line->setText(QStringLiteral("sesame"));
            qobject_cast<QDialog*>(box)->accept();
        });
        EXPECT_EQ(boxes.input({.text = "Password?", .secret = secret}), "sesame");
    }
}

TEST_F(ArchiveWindowTest, DrawsAHundredThousandRowsWithoutAskingForAll) {
    ArchiveBuilder builder;
    const std::string empty;
    for (int i = 0; i < 100'000; ++i) builder.add("F" + std::to_string(i), empty);
    dir.write("a.zip", builder.finish());
    zip::arcview window(program.context, archives);
    program.session.SelectedDir = dir.path();
    program.session.SelectedFile = "a.zip";
    archives.ListContents(window.view());
    window.listed = archives.library().open(dir.path("a.zip"));
    desktop::ArchiveTable drawn(window);
    drawn.resize(600, 400);
    drawn.sync();
    drawn.show();
    for (const int top : {0, 50'000, 99'000}) {
        drawn.verticalScrollBar()->setValue(top);
        EXPECT_FALSE(drawn.grab().isNull());
    }
    EXPECT_LT(drawn.rows_read(), 10'000U);
}

}  // namespace
}  // namespace quill::tests
