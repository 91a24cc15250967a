#include "zip/archive_leaving.h"

#include "zip/archive_actions.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using tests::ArchiveBuilder;
using tests::WindowProgram;

std::string two_members() {
    return ArchiveBuilder().add("letter", "as stored").add("d/below", "2").finish();
}

TEST(LeavingAnArchive, TheStartModeDecidesWhatComesNext) {
    const struct {
        int mode;
        bool ends, shows_main_window;
    } cases[] = {{1, false, true}, {3, false, false}, {0, true, false}};
    for (const auto& c : cases) {
        WindowProgram p(two_members());
        arcview& w = p.open();
        p.session.StartMode = c.mode;
        p.main_window.apt(1).text = "Decode/open a.zip";
        p.main_window.Label3.text = "a.zip";
        EXPECT_EQ(tests::ends_process([&] { w.close(); }), c.ends);
        EXPECT_EQ(p.window(), nullptr);
        EXPECT_EQ(p.main_window.visible, c.shows_main_window);
        if (!c.shows_main_window) continue;
        EXPECT_EQ(p.main_window.apt(1).text, "Select/Open/View a file");
        EXPECT_FALSE(p.main_window.apt(3).visible);
        EXPECT_EQ(p.main_window.Label3.text, "");
    }
}

TEST(LeavingAnArchive, RepackDeletesOnlyWhatTheWindowMade) {
    WindowProgram p(two_members());
    p.unpack_beside();
    p.dir.write("letter", "the user's own");
    p.dir.write("d/notes", "the user's own, too");
    arcview& w = p.open();
    EXPECT_EQ(p.dir.read("letter (2)"), "as stored");
    w.rpnex.click();
    EXPECT_THAT(p.dir.names(), ElementsAre("a.zip", "d", "letter", "temp"));
    EXPECT_EQ(p.dir.read("letter"), "the user's own");
    EXPECT_TRUE(p.dir.has("d/notes"));
    EXPECT_FALSE(p.dir.has("d/below"));
    EXPECT_TRUE(p.main_window.visible);
}

TEST(LeavingAnArchive, StoppingTheDeletionKeepsTheWindow) {
    for (const bool by_repack : {true, false}) {
        WindowProgram p(two_members());
        arcview& w = p.open();
        const std::string work_dir = p.session.WorkDir;
        p.platform.on_repaint = [&](controls::Window&) {
            if (w.stop.visible) w.stop_wanted = true;
        };
        by_repack ? w.rpnex.click() : w.close();
        ASSERT_NE(p.window(), nullptr);
        EXPECT_TRUE(w.visible);
        EXPECT_TRUE(std::filesystem::exists(work_dir + "/letter"));
        p.platform.on_repaint = {};
        by_repack ? w.rpnex.click() : w.close();
        EXPECT_EQ(p.window(), nullptr);
        EXPECT_FALSE(std::filesystem::exists(work_dir));
    }
}

TEST(LeavingAnArchive, RepackTakesItsEmptyDirectoriesAway) {
    for (const bool beside : {true, false}) {
        WindowProgram p(two_members());
        if (beside) p.unpack_beside();
        p.open().rpnex.click();
        EXPECT_FALSE(p.dir.has("d"));
        EXPECT_FALSE(p.dir.has("temp/a.zip"));
        EXPECT_EQ(p.dir.read("a.zip"), two_members());
    }
}

TEST(LeavingAnArchive, ChangedFilesAreAskedAbout) {
    const struct {
        const char* answer;
        bool leaves, saved;
    } cases[] = {{"&Save", true, true}, {"&Leave out", true, false}, {"&Cancel", false, false}};
    const std::function<void(arcview&)> ways[] = {[](arcview& w) { w.rpnex.click(); }, [](arcview& w) { w.close(); }};
    for (const auto& way : ways) {
        for (const auto& c : cases) {
            SCOPED_TRACE(c.answer);
            WindowProgram p(two_members());
            arcview& w = p.open();
            const std::string file = p.file(0);
            p.change(0, "by another program");
            p.platform.expect_choice("letter was changed", c.answer);
            way(w);
            EXPECT_EQ(p.window() == nullptr, c.leaves);
            EXPECT_EQ(std::filesystem::exists(file), !c.saved);
            const Result<Archive> archive = Archive::open(p.dir.path("a.zip"));
            EXPECT_EQ(archive->members().front().uncompressed_size == 18, c.saved);
        }
    }
}

TEST(LeavingAnArchive, OneAnswerServesForAllChangedFiles) {
    for (const bool save : {true, false}) {
        WindowProgram p(two_members());
        arcview& w = p.open();
        p.change(0, "changed");
        p.change(1, "changed");
        p.platform.expect_choice("letter", save ? "Save &all" : "Leave &out all");
        w.close();
        const Result<Archive> archive = Archive::open(p.dir.path("a.zip"));
        for (const Member& member : archive->members()) EXPECT_EQ(member.uncompressed_size == 7, save);
    }
}

TEST(LeavingAnArchive, ExitWithoutRepackingLeavesTheFiles) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    const std::string file = p.file(0);
    p.platform.expect_question("leaving these files uncompressed", false);
    w.exnrp.click();
    ASSERT_NE(p.window(), nullptr);
    p.platform.expect_question("leaving these files uncompressed", true);
    w.exnrp.click();
    EXPECT_EQ(p.window(), nullptr);
    EXPECT_EQ(p.dir.read(file), "as stored");
}

TEST(LeavingAnArchive, AWorkDirThatIsGoneStopsRepacking) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    std::filesystem::remove_all(p.session.WorkDir);
    p.platform.expect_message("can't be entered");
    w.rpnex.click();
    EXPECT_NE(p.window(), nullptr);
}

TEST(LeavingAnArchive, AFileAddedOutOfWorkDirIsTheUsersAndStays) {
    WindowProgram p(two_members());
    p.unpack_beside();
    arcview& w = p.open();
    const std::string own = p.dir.write("own", "the user's");
    add_files(w, {own});
    w.rpnex.click();
    EXPECT_EQ(p.dir.read("own"), "the user's");
}

}  // namespace
}  // namespace quill::zip
