#include "zip/archive_reading.h"

#include "zip/archive_document.h"
#include "zip/archive_panel.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using tests::ArchiveBuilder;
using tests::WindowProgram;

std::string with_several_tops() {
    return ArchiveBuilder().add("letter", "as stored").add("d/below", "2").add("last", "3").finish();
}

std::string with_one_top() {
    return ArchiveBuilder().add("d/one", "1").add("d/two", "2").finish();
}

TEST(Extracting, GoesWhereThePanelSaysAndReplacesNothing) {
    const struct {
        const char* what;
        std::string archive;
        std::vector<std::size_t> selected;
        std::vector<const char*> files;  // below "target"
    } cases[] = {
        {"all of several tops", with_several_tops(), {}, {"a/letter", "a/d/below", "a/last"}},
        {"all of one top", with_one_top(), {}, {"d/one", "d/two"}},
        {"the selected ones", with_several_tops(), {0, 1}, {"a/letter", "a/d/below"}},
        {"one file", with_several_tops(), {1}, {"d/below"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        for (const bool taken : {false, true}) {
            WindowProgram p(c.archive);
            arcview& w = p.open();
            p.dir.make_directory("target");
            if (taken) p.dir.write("target/a", "the user's own");
            if (taken) p.dir.write("target/d/below", "the user's own");
            if (!c.selected.empty()) {
                w.List1.selected = c.selected.front();
                w.List1.selected_rows = c.selected;
            }
            c.selected.empty() ? w.extract.click() : w.exs.click();
            EXPECT_TRUE(w.Picture2.visible);
            EXPECT_EQ(w.Dir1.path, p.dir.path());
            show_panel_directory(w, p.dir.path("target"));
            w.Command2.click();
            EXPECT_FALSE(w.Picture2.visible);
            if (!taken) {
                for (const char* file : c.files) EXPECT_TRUE(p.dir.has(std::string("target/") + file)) << file;
                EXPECT_THAT(p.platform.opened, ElementsAre(p.dir.path(w.own_folder.checked ? "target/a" : "target")));
            } else {
                EXPECT_EQ(p.dir.read("target/a"), "the user's own");
                EXPECT_EQ(p.dir.read("target/d/below"), "the user's own");
                EXPECT_EQ(p.dir.has("target/a (2)"), w.own_folder.checked);
            }
        }
    }
}

TEST(Extracting, ThePanelCountsAndFollowsTheSelection) {
    WindowProgram p(with_several_tops());
    arcview& w = p.open();
    w.extract.click();
    EXPECT_TRUE(w.take_all.chosen);
    EXPECT_THAT(w.take_all.caption, HasSubstr("(3)"));
    EXPECT_TRUE(w.own_folder.checked);
    w.take_all.chosen = false;
    w.take_selected.chosen = true;
    w.take_selected.click();
    EXPECT_FALSE(w.own_folder.checked);  // one file needs no directory
    w.List1.selected_rows = {0, 2};
    w.List1.change();
    EXPECT_THAT(w.take_selected.caption, HasSubstr("(2)"));
    EXPECT_TRUE(w.own_folder.checked);
    w.List1.selected.reset();
    w.List1.selected_rows.clear();
    w.List1.change();
    EXPECT_FALSE(w.take_selected.enabled);
    EXPECT_TRUE(w.take_all.chosen);
    mover(w);
    EXPECT_TRUE(w.take_all.visible);
    EXPECT_FALSE(w.own_folder.visible);
}

TEST(Extracting, SaysWhatItCouldNotDo) {
    WindowProgram p(
        ArchiveBuilder().add("good", "1").add("bad", "2", {.crc = 1}).add("odd", "3", {.method = 77}).finish());
    p.platform.expect_message("The list shows which");
    arcview& w = p.open();
    w.extract.click();
    show_panel_directory(w, p.dir.path("nowhere"));
    p.platform.expect_message("could not be extracted");
    w.Command2.click();
    EXPECT_FALSE(p.dir.has("nowhere"));

    show_panel_directory(w, p.dir.make_directory("target"));
    w.own_folder.checked = w.opens_folder.checked = false;
    p.platform.expect_message("1 verified, 1 damaged, 1 not readable");
    w.Command2.click();
    EXPECT_THAT(p.platform.messages.back(), HasSubstr("odd: its method"));
    EXPECT_EQ(p.dir.read("target/good"), "1");
    EXPECT_FALSE(p.dir.has("target/odd"));
    EXPECT_THAT(p.platform.opened, IsEmpty());
}

TEST(Extracting, AFolderThatNothingWasWrittenIntoGoesAgain) {
    WindowProgram p(ArchiveBuilder().add("one", "1", {.method = 77}).add("two", "2", {.method = 77}).finish());
    p.platform.expect_message("The list shows which");
    arcview& w = p.open();
    w.extract.click();
    EXPECT_TRUE(w.own_folder.checked);
    show_panel_directory(w, p.dir.make_directory("target"));
    p.platform.expect_message("2 not readable");
    w.Command2.click();
    EXPECT_TRUE(std::filesystem::is_empty(p.dir.path("target")));
}

TEST(Extracting, ChangedFilesAreSavedOrLeftOutFirst) {
    for (const bool save : {true, false}) {
        WindowProgram p(with_one_top());
        arcview& w = p.open();
        p.change(0, "changed");
        w.extract.click();
        show_panel_directory(w, p.dir.make_directory("target"));
        p.platform.expect_choice("one was changed", save ? "&Save" : "&Leave out");
        w.Command2.click();
        EXPECT_EQ(p.dir.read("target/d/one"), save ? "changed" : "1");
    }
}

TEST(Panel, ANewFolderNeverTakesATakenName) {
    WindowProgram p(with_one_top());
    arcview& w = p.open();
    p.dir.make_directory("letters");
    w.extract.click();
    const struct { const char *typed, *made; } cases[] = {{"letters", "letters (2)"}, {"fresh", "fresh"}};
    for (const auto& c : cases) {
        show_panel_directory(w, p.dir.path());
        p.platform.expect_input("new folder", c.typed);
        w.Command3.click();
        EXPECT_EQ(w.Dir1.path, p.dir.path(c.made));
        EXPECT_TRUE(std::filesystem::is_directory(p.dir.path(c.made)));
    }
    p.platform.expect_input("new folder", "no/such/place");
    p.platform.expect_message("no/such/place: ");
    w.Command3.click();
    p.platform.expect_input("new folder", "");
    w.Command3.click();
    EXPECT_EQ(w.Dir1.path, p.dir.path("fresh"));
}

TEST(Testing, EachRowGetsItsConditionAndABoxSumsUp) {
    WindowProgram p(with_several_tops());
    arcview& w = p.open();
    p.platform.expect_message("3 members, and all");
    w.test.click();

    // The disk goes bad below the archive: the same file with one byte changed.
    std::string bytes = p.dir.read("a.zip");
    const auto time = std::filesystem::last_write_time(p.dir.path("a.zip"));
    bytes[bytes.find("as stored")] ^= 1;
    p.dir.write("a.zip", bytes);
    std::filesystem::last_write_time(p.dir.path("a.zip"), time);
    take_archive(w);
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::verified);  // as when it was unpacked
    p.platform.expect_message("3 members: 2 verified, 1 damaged");
    w.test.click();
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::damaged);
    EXPECT_FALSE(row_details(w, 0).problems.empty());
    EXPECT_EQ(row_details(w, 1).condition, RowCondition::verified);
    EXPECT_EQ(p.bytes_of(0), "as stored");  // it writes nothing
}

TEST(Testing, AMemberWithRightBytesUnderTwoNamesIsNotVerified) {
    WindowProgram p(ArchiveBuilder().add("a.txt", "x", {.local_name = "evil.sh"}).add("good", "1").finish());
    p.platform.expect_message("1 member is damaged");
    arcview& w = p.open();
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::damaged);
    p.platform.expect_message("2 members: 1 verified, 1 damaged");
    w.test.click();
    EXPECT_THAT(p.platform.messages.back(), HasSubstr("evil.sh"));
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::damaged);
    EXPECT_EQ(row_details(w, 1).condition, RowCondition::verified);
}

TEST(Testing, TheWorstProblemIsTheReason) {
    const auto of = [](ProblemKind kind) {
        Problem problem;
        problem.kind = kind;
        return problem;
    };
    MemberResult result;
    result.verdict = Verdict::verified;
    EXPECT_EQ(worst_problem(result), nullptr);
    result.problems = {of(ProblemKind::renamed)};
    EXPECT_EQ(condition_of(result), RowCondition::verified);
    result.problems = {of(ProblemKind::renamed), of(ProblemKind::contents_differ), of(ProblemKind::renamed)};
    EXPECT_EQ(worst_problem(result)->kind, ProblemKind::contents_differ);
    EXPECT_EQ(condition_of(result), RowCondition::damaged);
}

TEST(Testing, AsksForThePasswordAndSaysWhatItMissed) {
    WindowProgram p(ArchiveBuilder().add("open", "1").finish());
    p.session.ZipPassword = "secret";
    p.main_window.List4.assign({p.dir.write("locked", "content")});
    ASSERT_EQ(p.archives.AddWizardItem(false), library_success);
    p.platform.expect_input("password encoded", "secret");
    arcview& w = p.open();
    for (const bool has_it : {false, true}) {
        p.session.ZipPassword = "wrong";
        p.platform.expect_input("does not seem to be the right one", has_it ? "secret" : "");
        p.platform.expect_message(has_it ? "2 members, and all" : "1 verified, 1 in need of another password");
        w.test.click();
        EXPECT_EQ(row_details(w, 1).condition, has_it ? RowCondition::verified : RowCondition::locked);
    }
}

TEST(RowStates, TheReasonIsShownInTheRowAndInTheLineBelow) {
    WindowProgram p(
        ArchiveBuilder().add("good", "1").add("bad", "2", {.crc = 1}).add("odd", "3", {.method = 77}).finish());
    p.platform.expect_message("The list shows which");
    arcview& w = p.open();
    EXPECT_TRUE(w.row_state.visible);
    const std::pair<std::size_t, const char*> cases[] = {
        {0, ""}, {1, "bad: Damaged: its CRC is wrong"}, {2, "odd: Refused: its method"}};
    for (const auto& [row, text] : cases) {
        w.List1.selected = row;
        w.List1.change();
        EXPECT_THAT(w.row_state.text, ::testing::StartsWith(text));
        EXPECT_EQ(w.row_state.text.empty(), row == 0);
    }
    EXPECT_EQ(state_text(row_details(w, 0)), "Verified");
    EXPECT_EQ(state_text(row_details(w, 1)), "Damaged: its CRC is wrong");
}

TEST(RowStates, AFileThatAnotherProgramChangesIsReportedWhileItsRowIsSelected) {
    WindowProgram p(with_one_top());
    arcview& w = p.open();
    w.List1.selected = 1;
    EXPECT_FALSE(w.row_state.visible);
    p.change(1, "by an editor");
    w.watch.tick();
    EXPECT_TRUE(w.row_state.visible);
    EXPECT_THAT(w.row_state.text, HasSubstr("Changed"));
    w.savzipch.click();
    EXPECT_FALSE(w.row_state.visible);
}

}  // namespace
}  // namespace quill::zip
