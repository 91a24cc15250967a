#include "zip/archive_document.h"

#include "archive/changing/archive_lock.h"
#include "support/full_disk.h"
#include "zip/archive_actions.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <optional>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using tests::ArchiveBuilder;
using tests::WindowProgram;

std::string two_members() {
    return ArchiveBuilder().add("letter", "as stored").add("other", "2").finish();
}

TEST(ArchiveDocument, TheTitleAndTheRowShowAFileThatAnotherProgramChanged) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    EXPECT_EQ(w.caption, "a.zip");
    p.change(0, "changed");
    w.watch.tick();
    EXPECT_THAT(w.caption, HasSubstr("1 changed file"));
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::changed);
    EXPECT_EQ(row_details(w, 1).condition, RowCondition::verified);
    w.List1.selected = 0;
    w.savzipch.click();
    EXPECT_EQ(w.caption, "a.zip");
    EXPECT_EQ(p.stored(0), "changed");
}

TEST(ArchiveDocument, EachKindOfChangeIsTakenBack) {
    const struct {
        const char* name;
        std::function<void(WindowProgram&, arcview&)> change;
    } changes[] = {{"save",
                    [](WindowProgram& p, arcview& w) {
                        p.change(0, "changed");
                        w.List1.selected = 0;
                        w.savzipch.click();
                    }},
                   {"removal",
                    [](WindowProgram& p, arcview& w) {
                        w.List1.selected = 0;
                        p.platform.expect_question("remove letter", true);
                        w.remzip.click();
                    }},
                   {"addition", [](WindowProgram& p, arcview& w) { add_files(w, {p.dir.write("from/new", "n")}); }}};
    for (const auto& c : changes) {
        SCOPED_TRACE(c.name);
        WindowProgram p(two_members());
        arcview& w = p.open();
        EXPECT_FALSE(w.undo.enabled);
        c.change(p, w);
        EXPECT_NE(p.dir.read("a.zip"), two_members());
        EXPECT_THAT(w.undo.caption, HasSubstr(c.name));
        w.undo.click();
        EXPECT_EQ(p.dir.read("a.zip"), two_members());
        EXPECT_THAT(p.names(), ElementsAre("letter", "other"));
        EXPECT_FALSE(w.undo.enabled);
        EXPECT_EQ(p.bytes_of(1), "2");
        EXPECT_FALSE(p.dir.has("temp/a.zip/new"));
    }
}

TEST(ArchiveDocument, TakingAChangeBackCanBeStoppedAndDoneLater) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    add_files(w, {p.dir.write("from/new", "n")});
    const std::string changed = p.dir.read("a.zip");
    p.platform.on_repaint = [&](controls::Window&) {
        if (w.stop.visible) w.stop_wanted = true;
    };
    w.undo.click();
    EXPECT_EQ(p.dir.read("a.zip"), changed);
    EXPECT_EQ(w.List1.count(), 3U);
    p.platform.on_repaint = {};
    w.undo.click();
    EXPECT_EQ(p.dir.read("a.zip"), two_members());
}

TEST(ArchiveDocument, TakingBackThatFailsCanBeTriedAgain) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    add_files(w, {p.dir.write("from/new", "n")});
    const std::string changed = p.dir.read("a.zip");
    {
        const tests::FullDisk disk(20);
        p.platform.expect_message("could not be taken back");
        w.undo.click();
    }
    EXPECT_EQ(p.dir.read("a.zip"), changed);
    EXPECT_EQ(w.List1.count(), 3U);
    ASSERT_TRUE(w.undo.enabled);
    w.undo.click();
    EXPECT_EQ(p.dir.read("a.zip"), two_members());
}

TEST(ArchiveDocument, TakingBackKeepsWhoMayReadTheArchive) {
    WindowProgram p(two_members());
    const auto owner_only = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    std::filesystem::permissions(p.dir.path("a.zip"), owner_only);
    arcview& w = p.open();
    add_files(w, {p.dir.write("from/new", "n")});
    w.undo.click();
    EXPECT_EQ(p.dir.read("a.zip"), two_members());
    EXPECT_EQ(std::filesystem::status(p.dir.path("a.zip")).permissions(), owner_only);
}

TEST(ArchiveDocument, TakingBackReplacesNothingThatAnotherProgramWroteMeanwhile) {
    const std::string theirs = ArchiveBuilder().add("theirs", "3").finish();
    WindowProgram p(two_members());
    arcview& w = p.open();
    add_files(w, {p.dir.write("from/new", "n")});
    p.platform.on_repaint = [&](controls::Window&) {
        p.platform.on_repaint = {};
        std::filesystem::rename(p.dir.write("new", theirs), p.dir.path("a.zip"));
    };
    p.platform.expect_message("another program has changed the archive");
    w.undo.click();
    EXPECT_EQ(p.dir.read("a.zip"), theirs);
    EXPECT_TRUE(w.undo.enabled);
}

TEST(ArchiveDocument, TakingBackWaitsWhereAnotherChangeHasTheArchive) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    add_files(w, {p.dir.write("from/new", "n")});
    const std::string changed = p.dir.read("a.zip");
    std::optional<Result<ArchiveLock>> theirs = ArchiveLock::take(p.dir.path("a.zip"), {});
    ASSERT_TRUE(theirs->ok());
    p.platform.on_repaint = [&](controls::Window&) {
        EXPECT_EQ(p.dir.read("a.zip"), changed);
        theirs.reset();
    };
    w.undo.click();
    EXPECT_FALSE(theirs);
    EXPECT_EQ(p.dir.read("a.zip"), two_members());
}

TEST(ArchiveDocument, BytesFromBeforeThatWereChangedAreNotTakenBack) {
    WindowProgram p(two_members());
    std::filesystem::create_hard_link(p.dir.path("a.zip"), p.dir.path("second name"));
    arcview& w = p.open();
    add_files(w, {p.dir.write("from/new", "n")});
    const std::string changed = p.dir.read("a.zip");
    p.dir.write("second name", std::string(two_members().size(), 'x'));
    p.platform.expect_message("bytes from before are lost");
    w.undo.click();
    EXPECT_EQ(p.dir.read("a.zip"), changed);
}

TEST(ArchiveDocument, ASaveThatIsTakenBackLeavesTheFileChanged) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    p.change(0, "changed");
    w.List1.selected = 0;
    w.savzipch.click();
    w.undo.click();
    EXPECT_EQ(p.bytes_of(0), "changed");
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::changed);
}

TEST(ArchiveDocument, AnArchiveThatAnotherProgramReplacedIsAskedAbout) {
    const std::string theirs = ArchiveBuilder().add("theirs", "3").finish();
    const struct {
        const char* answer;
        std::vector<std::string> rows;
    } cases[] = {{"&Reload", {"theirs"}}, {"&Go on with mine", {"other"}}, {"&Cancel", {"letter", "other"}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.answer);
        WindowProgram p(two_members());
        arcview& w = p.open();
        std::filesystem::rename(p.dir.write("new", theirs), p.dir.path("a.zip"));
        w.List1.selected = 0;
        const bool goes_on = c.rows.size() == 1 && c.rows.front() == "other";
        p.platform.expect_question("remove letter", true);
        p.platform.expect_choice("changed by another program", c.answer);
        if (goes_on) p.platform.expect_message("a (2).zip");
        w.remzip.click();
        EXPECT_EQ(p.names(), c.rows);
        EXPECT_EQ(p.dir.read("a.zip"), theirs);
        EXPECT_EQ(p.dir.has("a (2).zip"), goes_on);
    }
}

TEST(ArchiveDocument, TheUserIsAskedOnceUntilTheArchiveChangesAgain) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    const auto replace = [&](const char* member) {
        std::filesystem::rename(p.dir.write("new", ArchiveBuilder().add(member, "3").finish()), p.dir.path("a.zip"));
    };
    replace("theirs");
    p.platform.expect_choice("changed by another program", "&Cancel", [&] { EXPECT_FALSE(w.watch.enabled); });
    w.watch.tick();
    w.watch.tick();
    replace("another");
    p.platform.expect_choice("changed by another program", "&Reload");
    w.watch.tick();
    EXPECT_THAT(p.names(), ElementsAre("another"));
    EXPECT_EQ(p.bytes_of(0), "3");
}

TEST(ArchiveDocument, AnArchiveWrittenInPlaceCanOnlyBeReadAgain) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    p.dir.write("a.zip", ArchiveBuilder().add("theirs", "3").finish());
    p.platform.expect_choice("changed by another program", "&Reload");
    w.watch.tick();
    EXPECT_THAT(p.names(), ElementsAre("theirs"));
}

TEST(ArchiveDocument, AnArchiveThatIsGoneIsWrittenAgain) {
    WindowProgram p(two_members());
    arcview& w = p.open();
    std::filesystem::remove(p.dir.path("a.zip"));
    p.platform.expect_choice("no longer there", "&Go on with mine");
    p.platform.expect_message("a.zip");
    w.watch.tick();
    EXPECT_EQ(p.dir.read("a.zip"), two_members());
}

TEST(ArchiveDocument, AChangeThatFailsIsReportedAndLeavesNothingToTakeBack) {
    const std::string whole = two_members();
    WindowProgram p(whole.substr(0, whole.size() - 22));  // without the end record it is read-only
    p.platform.expect_message("the directory at the end is missing");
    arcview& w = p.open();
    p.platform.expect_message("was not changed");
    add_files(w, {p.dir.write("from/new", "n")});
    EXPECT_FALSE(w.undo.enabled);
    EXPECT_EQ(w.List1.count(), 2U);
}

}  // namespace
}  // namespace quill::zip
