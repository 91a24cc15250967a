#include "zip/archive_window.h"

#include "encoder/file_chooser.h"
#include "zip/archive_actions.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <set>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;
using tests::ArchiveBuilder;
using tests::WindowProgram;

std::string archive_of(std::size_t members) {
    ArchiveBuilder builder;
    for (std::size_t i = 0; i < members; ++i) builder.add("F" + std::to_string(i), std::to_string(i));
    return builder.finish();
}

TEST(ArchiveWindow, OpensWithAllMembersUnpackedInAPrivateDirectory) {
    WindowProgram p(ArchiveBuilder().add("Letter.TXT", "dear").add("d/b", "below").finish());
    const arcview& w = p.open();
    EXPECT_TRUE(w.visible);
    EXPECT_FALSE(p.main_window.visible);
    EXPECT_FALSE(p.main_window.Picture5.visible);
    EXPECT_EQ(p.session.StartMode, 1);
    EXPECT_THAT(p.names(), ElementsAre("letter.txt", "d/b"));
    EXPECT_EQ(p.bytes_of(0), "dear");
    EXPECT_EQ(p.file(1), p.session.WorkDir + "/d/b");
    EXPECT_THAT(p.session.WorkDir, StartsWith(p.dir.path("temp/")));
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(p.session.WorkDir).permissions(), perms::owner_all);
    EXPECT_EQ(std::filesystem::current_path(), p.session.WorkDir);
    EXPECT_EQ(w.Label23.text, "2");
    EXPECT_EQ(w.Label4.text, "a.zip");
    EXPECT_EQ(w.List1.selected, 1U);
    EXPECT_EQ(row_details(p.open(), 0).name, "Letter.TXT");
}

TEST(ArchiveWindow, ShowsAllPicturesInTheViewer) {
    WindowProgram p(ArchiveBuilder().add("a.png", "1").add("letter.txt", "2").finish());
    arcview& w = p.open();
    std::vector<std::string> shown;
    p.routes.show_pictures = [&](const std::vector<std::string>& paths) { shown = paths; };
    controls::run(w.pictures.click);
    EXPECT_THAT(shown, ElementsAre(p.file(0), p.file(1)));
}

TEST(ArchiveWindow, WhatCannotBeOpenedIsReportedAndLeavesTheMainWindow) {
    const struct {
        const char *name, *bytes, *message;
    } cases[] = {{"a.zip", "no archive, just some words", "can't be opened"}, {"a.txt", "text", nullptr}};
    for (const auto& c : cases) {
        WindowProgram p(c.bytes, c.name);
        if (c.message != nullptr) p.platform.expect_message(c.message);
        shell::openarchive(p.context);
        EXPECT_EQ(p.window(), nullptr);
        EXPECT_TRUE(p.main_window.visible);
    }
}

TEST(ArchiveWindow, MembersThatAreNotWholeSayWhy) {
    WindowProgram p(
        ArchiveBuilder().add("good", "1").add("bad", "2", {.crc = 1}).add("strange", "3", {.method = 77}).finish());
    p.platform.expect_message("could not be unpacked");
    arcview& w = p.open();
    const RowCondition conditions[] = {RowCondition::verified, RowCondition::damaged, RowCondition::refused};
    for (std::size_t row = 0; row < 3; ++row) {
        const RowDetails details = row_details(w, row);
        EXPECT_EQ(details.condition, conditions[row]) << details.name;
        EXPECT_EQ(details.problems.empty(), row == 0);
    }
    EXPECT_EQ(p.file(2), "");
    w.List1.selected = 2;
    p.platform.expect_message("strange: ");
    w.opt.click();
    EXPECT_TRUE(p.platform.opened.empty());
}

TEST(ArchiveWindow, SaysTheWorstOfAMembersProblems) {
    ArchiveBuilder builder;
    builder.add("bad", "2", {.crc = 1});
    WindowProgram p(builder.finish());
    p.platform.expect_message("damaged");
    arcview& w = p.open();
    MemberResult result = p.archives.copies().of(0)->result;
    const std::string worst = row_details(w, 0).problems.front();
    result.problems.insert(result.problems.begin(), Problem{ProblemKind::renamed, 0, {}});
    w.tested[0] = result;
    EXPECT_EQ(row_details(w, 0).problems.front(), worst);
    EXPECT_EQ(row_details(w, 0).problems.size(), 2U);
}

TEST(ArchiveWindow, AnExtractionThatFailsAsAWholeSaysWhy) {
    const std::string archive = archive_of(2);
    {
        WindowProgram p(archive);  // no directory for this archive
        p.session.WorkDir = p.main_window.Text1.text = p.dir.write("file", "no directory");
        p.platform.expect_message("No directory can be made in " + p.dir.path("file"));
        arcview& w = p.open();
        EXPECT_EQ(row_details(w, 0).condition, RowCondition::not_unpacked);
        p.platform.expect_message("could not be unpacked to");
        w.peo.click();
        EXPECT_TRUE(p.platform.opened.empty());
    }
    WindowProgram p(archive);  // the chosen directory is gone
    p.session.WorkDir = p.dir.path("missing");
    p.platform.expect_message("could not be unpacked to " + p.dir.path("missing"));
    p.open();
}

TEST(ArchiveWindow, AnArchiveInAnArchiveUnpacksIntoADirectoryThatGoesWithItsWindow) {
    WindowProgram p(ArchiveBuilder().add("inner.zip", archive_of(2)).finish());
    p.open();
    const std::string outer = p.session.WorkDir;
    p.session.SelectedDir = p.session.WorkDir = outer;  // like the switch /un
    p.session.SelectedFile = "inner.zip";
    arcview& inner = p.open();
    EXPECT_THAT(p.session.WorkDir, StartsWith(p.dir.path("temp/inner.zip")));
    EXPECT_EQ(p.bytes_of(0), "0");
    inner.close();
    EXPECT_THAT(p.dir.names(), ElementsAre("a.zip", "temp"));
    EXPECT_TRUE(std::filesystem::exists(outer + "/inner.zip"));
    EXPECT_FALSE(p.dir.has("temp/inner.zip"));
    EXPECT_FALSE(p.dir.has("temp/a.zip/F0"));
}

TEST(ArchiveWindow, BeginsANewArchiveUnderANameThatIsAskedFor) {
    WindowProgram p(archive_of(1));
    p.session.SelectedDir = "?" + p.dir.path();
    p.session.SelectedFile = "";
    p.platform.expect_input("Enter a name", "letters");
    p.platform.expect_message("must end in .zip");
    p.platform.expect_input("Enter a name", "letters.ZIP");
    const arcview& w = p.open();
    EXPECT_EQ(w.ArchivePath, p.dir.path("letters.ZIP"));
    EXPECT_EQ(w.Label23.text, "0");
    EXPECT_FALSE(p.dir.has("letters.ZIP"));
}

TEST(ArchiveWindow, ShowsTenRowsAtATime) {
    const struct {
        std::size_t members;
        bool scrolls;
        std::size_t maximum, on_page;
    } cases[] = {{0, false, 0, 0}, {9, false, 0, 9}, {10, false, 0, 10}, {11, true, 1, 10}, {300, true, 290, 10}};
    for (const auto& c : cases) {
        WindowProgram p(archive_of(c.members));
        const arcview& w = p.open();
        EXPECT_EQ(w.VScroll2.enabled, c.scrolls) << c.members;
        EXPECT_EQ(w.VScroll2.maximum, c.maximum);
        EXPECT_EQ(w.List7.count(), c.on_page);
        EXPECT_EQ(w.Label23.text, std::to_string(c.members));
        for (int cell = 1; cell <= 10; ++cell)
            EXPECT_EQ(w.Image10(cell).icon.name.empty(), cell > static_cast<int>(c.on_page));
    }
}

TEST(ArchiveWindow, PageAndSelectionFollowEachOther) {
    WindowProgram p(archive_of(30));
    arcview& w = p.open();
    w.VScroll2.value = 4;
    w.VScroll2.change();
    EXPECT_EQ(w.ListTop, 4U);
    EXPECT_EQ(name_in_row(w.List7.items().front()), "f4");
    w.List7.selected = 5;
    w.List7.change();
    EXPECT_EQ(w.List1.selected, 9U);
    const struct {
        std::size_t row, top, on_page;
    } selections[] = {{9, 4, 5}, {20, 11, 9}, {15, 11, 4}, {3, 3, 0}, {29, 20, 9}};
    for (const auto& s : selections) {
        w.List1.selected = s.row;
        w.List1.change();
        EXPECT_EQ(w.ListTop, s.top) << s.row;
        EXPECT_EQ(w.List7.selected, s.on_page);
        EXPECT_EQ(w.List7.selected_item(), w.List1.selected_item());
    }
    turn_page_to(w, 1000);
    EXPECT_EQ(w.VScroll2.value, 20U);
}

TEST(ArchiveWindow, TheSelectedProgramShowsItsIcon) {
    WindowProgram p(ArchiveBuilder().add("setup.EXE", "MZ").add("letter", "1").finish());
    arcview& w = p.open();
    for (const std::size_t row : {0U, 1U}) {
        w.List1.selected = row;
        w.List1.change();
        EXPECT_EQ(w.Picture9.visible, row == 0);
    }
}

TEST(ArchiveWindow, MembersOpenWithTheirOwnKindOfProgram) {
    WindowProgram p(ArchiveBuilder()
                        .add("Notes.TXT", "1")
                        .add("read.me", "2")
                        .add("picture.jpg", "3")
                        .add("inner.zip", "4")
                        .add("photo.jpg.exe", "5")
                        .add("page.html", "6")
                        .finish());
    arcview& w = p.open();
    p.platform.expect_message("photo.jpg.exe");
    p.platform.expect_question("page.html", false);
    for (std::size_t row = 0; row < w.List1.count(); ++row) {
        w.List1.selected = row;
        w.List1.double_click();
    }
    EXPECT_THAT(p.platform.edited, ElementsAre(p.file(0), p.file(1)));
    EXPECT_THAT(p.platform.opened, ElementsAre(p.file(2)));
    using Start = tests::ScriptedPlatform::Start;
    EXPECT_THAT(p.platform.started, ElementsAre(Start{"quillbright", {"/unp", p.file(3)}, p.session.WorkDir}));
}

TEST(ArchiveWindow, AFileThatIsGoneIsUnpackedAgainToBeOpened) {
    WindowProgram p(ArchiveBuilder().add("a.jpg", "1").finish());
    arcview& w = p.open();
    std::filesystem::remove(p.file(0));
    w.peo.click();
    EXPECT_EQ(p.bytes_of(0), "1");
    EXPECT_EQ(p.platform.opened.size(), 1U);
}

TEST(ArchiveWindow, NothingOfADamagedArchiveIsOpenedForWriting) {
    const std::string whole = ArchiveBuilder().add("a.jpg", "1").finish();
    for (const bool damaged : {false, true}) {
        WindowProgram p(damaged ? whole.substr(0, whole.size() - 22) : whole);
        if (damaged) p.platform.expect_message("the directory at the end is missing");
        arcview& w = p.open();
        w.peo.click();
        using std::filesystem::perms;
        const perms mode = std::filesystem::status(p.file(0)).permissions();
        EXPECT_EQ((mode & perms::owner_write) == perms::none, damaged);
    }
}

TEST(ArchiveWindow, RemovesTheSelectedMembersAfterAQuestion) {
    WindowProgram p(archive_of(4));
    arcview& w = p.open();
    w.List1.selected = 1;
    w.List1.selected_rows = {1, 3};
    p.platform.expect_question("remove 2 files", false);
    w.rrm.click();
    EXPECT_EQ(w.List1.count(), 4U);
    p.platform.expect_question("remove 2 files", true);
    w.remzip.click();
    EXPECT_TRUE(p.platform.questions.back().no_is_default);
    EXPECT_THAT(p.names(), ElementsAre("f0", "f2"));
    EXPECT_EQ(w.List7.count(), 2U);
    EXPECT_TRUE(p.dir.has("temp/a.zip/F1"));  // the file of a removed member stays
    EXPECT_EQ(p.bytes_of(1), "2");
}

TEST(ArchiveWindow, AddsByTheChooserAndByPaths) {
    WindowProgram p(archive_of(1));
    arcview& w = p.open();
    p.dir.write("from/letter", "dear");
    w.adtozip.click();
    auto* chooser = p.windows.loaded<encoder::cmdg>();
    ASSERT_NE(chooser, nullptr);
    EXPECT_EQ(chooser->mode(), encoder::ChooserMode::add_to_archive);
    encoder::enter_directory(*chooser, p.dir.path("from"));
    chooser->File1.selected = 0;
    chooser->Command1.click();
    EXPECT_THAT(p.names(), ElementsAre("f0", "letter"));
    EXPECT_EQ(w.List7.count(), 2U);
    EXPECT_EQ(p.bytes_of(1), "dear");
    w.adtozip.click();
    p.windows.loaded<encoder::cmdg>()->Command2.click();
    EXPECT_FALSE(p.main_window.visible);
}

TEST(ArchiveWindow, HintsFollowThePointer) {
    WindowProgram p(archive_of(1));
    arcview& w = p.open();
    std::set<std::string> hints;
    w.Image1.for_each([&](int, ToolPicture& tool) {
        tool.hover();
        hints.insert(w.Label13.text);
    });
    EXPECT_EQ(hints.size(), 4U);
    w.Picture1.hover();
    EXPECT_EQ(w.Label13.text, "");
    w.Image1(4).press();
    EXPECT_TRUE(w.Image2(4).visible);
    p.platform.expect_question("leaving these files uncompressed", false);
    w.Image1(4).click();
    EXPECT_FALSE(w.Image2(4).visible);
}

TEST(ArchiveWindow, NamesEveryControlOnce) {
    WindowProgram p(archive_of(1));
    std::set<std::string> names;
    std::set<const void*> controls_named;
    visit_controls(p.open(), [&](const std::string& name, const std::string& role, auto& control) {
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_TRUE(controls_named.insert(&control).second) << name;
        EXPECT_FALSE(role.empty());
    });
    EXPECT_GT(names.size(), 50U);
}

TEST(HandingOut, GivesTheSelectedFilesAndReportsTheMembersWithoutOne) {
    WindowProgram p(ArchiveBuilder().add("a", "1").add("odd", "2", {.method = 77}).add("b", "3").finish());
    p.platform.expect_message("could not be unpacked");
    arcview& w = p.open();
    w.List1.selected_rows = {0, 1};
    const Handed handed = files_to_hand_out(w);
    EXPECT_THAT(handed.paths, ElementsAre(p.file(0)));
    EXPECT_THAT(handed.without_file, ElementsAre(1U));
    p.platform.expect_message("1 selected member was left out");
    report_without_file(w, handed.without_file);
    EXPECT_THAT(p.platform.messages.back(), ::testing::HasSubstr("odd: its method"));
    report_without_file(w, {});
}

}  // namespace
}  // namespace quill::zip
