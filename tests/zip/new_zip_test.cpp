#include "zip/new_zip.h"

#include "archive/archive_builder.h"
#include "encoder/file_chooser.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "text/ascii.h"
#include "zip/member_rows.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <set>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using tests::ArchiveBuilder;

/// The program with an archive and the archive window's controls.
struct ZipProgram : tests::Program {
    tests::TemporaryDirectory dir;
    controls::ListBox List1;
    controls::Label Label18, Label20, Label21, percent;
    NewZIP zip{context};

    ArchiveView view() { return {List1, Label18, Label20, Label21, percent}; }

    explicit ZipProgram(const std::string& archive) {
        dir.write("a.zip", archive);
        session.SelectedDir = dir.path();
        session.SelectedFile = "a.zip";
        session.WorkDir = dir.make_directory("work");
        Label21.text = dir.path("a.zip");
    }
    std::string work(const std::string& name) { return dir.read("work/" + name); }
    void open() {
        ASSERT_TRUE(zip.ListContents(view()));
        List1.selected = 0;
        zip.ExtractSelected(view());
    }
    /// Puts a new file into the directory `from` and adds it.
    void add_by_chooser(const std::string& name, const std::string& content) {
        dir.write("from/" + name, content);
        auto& chooser = windows.load<encoder::cmdg>(context);
        chooser.Dir1.path = dir.path("from");
        chooser.File1.set_directory(dir.path("from"));
        const auto& files = chooser.File1.items();
        chooser.File1.selected = std::find(files.begin(), files.end(), name) - files.begin();
        zip.AddChosenFiles(view(), [&](const std::vector<std::string>& paths) {
            std::vector<ZipItem> items;
            for (const std::string& path : paths) items.push_back({path});
            zip.add_items(view(), items);
        });
    }
    std::vector<std::string> names() {
        std::vector<std::string> out;
        for (const std::string& row : List1.items()) out.push_back(name_in_row(row));
        return out;
    }
};

TEST(NewZip, ALargeExpansionIsAskedAbout) {
    for (const bool answer : {false, true}) {
        ZipProgram p(ArchiveBuilder().add("a", std::string(500, 'a')).add("b", std::string(500, 'b')).finish());
        p.zip.library().limits = {.most_ratio = 0, .free_bytes = 700};
        p.platform.expect_question("1,000 bytes", answer);
        p.open();
        EXPECT_EQ(p.dir.has("work/a"), answer);
        EXPECT_EQ(p.dir.has("work/b"), answer);
    }
}

TEST(NewZip, AStoppedOperationLeavesTheArchiveAsItWas) {
    const std::string old = ArchiveBuilder().add("a", "1").add("b", "2").finish();
    ZipProgram p(old);
    p.open();
    std::size_t calls = 0;
    p.zip.progress = [&](const Progress&) { return ++calls == 0; };
    p.add_by_chooser("c", "3");
    EXPECT_EQ(p.dir.read("a.zip"), old);
    p.List1.selected = 0;
    p.zip.DeleteSelectedItems(p.view());
    EXPECT_EQ(p.dir.read("a.zip"), old);
    p.dir.write("work/a", "changed");
    p.zip.SaveChangedFile(p.view(), 0, {});
    EXPECT_EQ(p.dir.read("a.zip"), old);
    EXPECT_GE(calls, 3U);
    EXPECT_THAT(p.dir.names(), ElementsAre("a.zip", "from", "work"));
}

TEST(MemberRow, HasFiveColumns) {
    ZipItemInfo info;
    info.uncompressedSize = 100;
    info.compressedSize = 25;
    info.fileName = std::string("Some Name.TXT\0rest", 18);
    EXPECT_EQ(member_row(info), "01/01/99 09:09\t25\t100\t75%\tsome name.txt");
    EXPECT_EQ(name_in_row(member_row(info)), "some name.txt");
    info.fileName = "GR\xC3\x9C\xC3\x9F\xC3\x84 \xD0\x98.TXT";
    EXPECT_EQ(name_in_row(member_row(info)), "gr\xC3\xBC\xC3\x9F\xC3\xA4 \xD0\xB8.txt");
}

TEST(MemberRow, PercentGoesToTheNearestEvenOnTies) {
    const struct {
        std::int64_t size, compressed;
        int percent;
    } cases[] = {{0, 0, 0},     {0, 2, 0},     {10, 12, 0},   {100, 25, 75}, {3, 2, 33},
                 {200, 199, 0}, {200, 197, 2}, {200, 195, 2}, {1, 0, 100}};
    for (const auto& c : cases)
        EXPECT_EQ(percent_saved(c.size, c.compressed), c.percent) << c.size << " " << c.compressed;
}

TEST(Grouped, PutsCommasAndNothingForZero) {
    EXPECT_EQ(grouped(0), "");
    EXPECT_EQ(grouped(999), "999");
    EXPECT_EQ(grouped(1000), "1,000");
    EXPECT_EQ(grouped(12'345'678'901), "12,345,678,901");
}

TEST(NewZip, ListsAllRowsInTheArchivesOrder) {
    ArchiveBuilder builder;
    for (int i = 0; i < 300; ++i) builder.add("F" + std::to_string(300 - i), std::string(10, 'x'));
    ZipProgram p(builder.finish());
    ASSERT_TRUE(p.zip.ListContents(p.view()));
    EXPECT_EQ(p.List1.count(), 300U);
    EXPECT_EQ(p.List1.items().front(), "03/11/25 17:33\t10\t10\t0%\tf300");
    EXPECT_EQ(p.Label20.text, "3,000");
    EXPECT_EQ(p.Label18.text, grouped(builder.finish().size()));
}

TEST(NewZip, AListThatFailsSaysSo) {
    ZipProgram p(ArchiveBuilder().add("a", "1").finish());
    ASSERT_TRUE(p.zip.ListContents(p.view()));
    p.dir.write("a.zip", "no archive any more, just some words");
    EXPECT_FALSE(p.zip.ListContents(p.view()));
    EXPECT_EQ(p.List1.count(), 1U);  // unchanged
    p.dir.write("a.zip", "");
    EXPECT_FALSE(p.zip.ListContents(p.view()));
    EXPECT_EQ(p.List1.count(), 0U);
    p.List1.add("row");
    p.session.SelectedFile = "No ZIP File Selected";
    EXPECT_FALSE(p.zip.ListContents(p.view()));
    EXPECT_EQ(p.List1.count(), 0U);
}

TEST(NewZip, ExtractsEverythingBesideTheUsersOwnFiles) {
    ZipProgram p(ArchiveBuilder().add("A.txt", "new").add("d/b", "below").add("bad", "x", {.method = 77}).finish());
    p.dir.write("work/A.txt", "the user's");
    p.dir.write("work/bad", "the user's");
    std::set<std::string> percents;
    p.platform.on_repaint = [&](controls::Window&) { percents.insert(p.percent.text); };
    p.open();
    EXPECT_EQ(p.work("A.txt"), "the user's");
    EXPECT_EQ(p.work("bad"), "the user's");
    EXPECT_EQ(p.work("A (2).txt"), "new");
    EXPECT_EQ(p.work("d/b"), "below");
    EXPECT_EQ(p.zip.extracted_name(0), "A (2).txt");
    EXPECT_EQ(p.zip.extracted_name(2), "");
    EXPECT_EQ(p.List1.selected, 2U);
    EXPECT_EQ(std::filesystem::current_path(), p.session.WorkDir);
    EXPECT_EQ(p.percent.text, "100%");
    EXPECT_EQ(p.main_window.Picture6.left, p.main_window.Picture5.width);
    EXPECT_TRUE(percents.count("100%"));
}

TEST(NewZip, ExtractingAgainReplacesUntouchedCopiesAndKeepsChangedOnes) {
    ZipProgram p(ArchiveBuilder().add("touched", "as stored").add("same", "as stored").finish());
    p.open();
    p.dir.write("work/touched", "by another program");
    p.List1.selected = 0;
    p.zip.ExtractSelected(p.view());
    EXPECT_EQ(p.work("touched"), "by another program");
    EXPECT_EQ(p.zip.extracted_name(0), "touched (2)");
    EXPECT_EQ(p.zip.extracted_name(1), "same");
}

TEST(NewZip, AnAddedFileReplacesNoneOfTheUsers) {
    ZipProgram p(ArchiveBuilder().add("a", "1").finish());
    p.open();
    p.dir.write("work/new", "the user's");
    p.add_by_chooser("new", "added");
    EXPECT_EQ(p.work("new"), "the user's");
    EXPECT_EQ(p.work("new (2)"), "added");
    EXPECT_EQ(p.zip.extracted_name(1), "new (2)");
    p.add_by_chooser("new", "added again");
    EXPECT_EQ(p.work("new (2)"), "added again");
}

TEST(NewZip, ExtractingBesideTheArchiveNeverReplacesIt) {
    const std::string archive = ArchiveBuilder().add("a.zip", "a member of the archive's own name").finish();
    ZipProgram p(archive);
    p.session.WorkDir = p.dir.path();
    p.open();
    EXPECT_EQ(p.dir.read("a.zip"), archive);
    EXPECT_EQ(p.zip.extracted_name(0), "a (2).zip");
}

TEST(NewZip, TheArchiveIsKnownByALinkToItsDirectoryToo) {
    ZipProgram p(ArchiveBuilder().add("a.zip", "a member of the archive's own name").finish());
    std::filesystem::create_directory_symlink(p.dir.path(), p.dir.path("link"));
    p.session.WorkDir = p.dir.path("link");
    p.open();
    EXPECT_EQ(p.zip.extracted_name(0), "a (2).zip");
    p.add_by_chooser("a.zip", "another file of that name");
    EXPECT_TRUE(p.zip.ListContents(p.view()));  // the archive has not been replaced by the file added to it
    EXPECT_THAT(p.names(), ElementsAre("a.zip"));
    EXPECT_EQ(p.zip.extracted_name(0), "a (2).zip");
}

TEST(NewZip, DeletesTheSelectedRowAlone) {
    ZipProgram p(ArchiveBuilder().add("same", "1").add("same", "2").add("other", "3").finish());
    p.open();
    p.List1.selected = 1;
    p.zip.DeleteSelectedItems(p.view());
    EXPECT_THAT(p.names(), ElementsAre("same", "other"));
    EXPECT_EQ(p.zip.extracted_name(1), "other");
    EXPECT_TRUE(p.dir.has("work/same (2)"));  // the copy of a deleted member stays
    EXPECT_FALSE(p.List1.selected.has_value());
    p.zip.DeleteSelectedItems(p.view());
    EXPECT_EQ(p.List1.count(), 2U);
}

TEST(NewZip, AnArchiveChangedBehindTheWindowLosesNoWrongMember) {
    ZipProgram p(ArchiveBuilder().add("a", "1").add("b", "2").finish());
    p.open();
    p.dir.write("a.zip", ArchiveBuilder().add("precious", "0").add("a", "1").finish());
    p.List1.selected = 0;
    p.zip.DeleteSelectedItems(p.view());
    EXPECT_THAT(p.names(), ElementsAre("precious", "a"));
    EXPECT_EQ(p.zip.extracted_name(0), "");
}

TEST(NewZip, AnArchiveChangedBehindTheWindowTakesNoChangedFileIntoAnotherMember) {
    ZipProgram p(ArchiveBuilder().add("a", "1").finish());
    p.open();
    const std::string theirs = ArchiveBuilder().add("precious", "0").add("a", "1").finish();
    p.dir.write("a.zip", theirs);
    p.platform.expect_message("No file was select to save changes to");
    p.zip.SaveChangedFile(p.view(), 0, {});
    EXPECT_EQ(p.dir.read("a.zip"), theirs);
}

TEST(NewZip, SavesAChangedFileInItsOwnPlaceAmongMembersOfItsName) {
    ZipProgram p(ArchiveBuilder().add("same", "1").add("same", "2").finish());
    p.open();
    p.dir.write("work/same", "changed");
    EXPECT_THAT(p.zip.copies().changed(), ElementsAre(0U));
    p.zip.SaveChangedFile(p.view(), 0, {});
    EXPECT_THAT(p.zip.copies().changed(), ElementsAre());
    p.List1.selected = 0;
    p.zip.ExtractSelected(p.view());
    EXPECT_EQ(p.work("same"), "changed");
    EXPECT_EQ(p.work("same (2)"), "2");
}

TEST(NewZip, ALockedMemberIsNotSavedInTheClear) {
    ZipProgram p(ArchiveBuilder().finish());
    p.session.ZipPassword = "secret";
    p.main_window.List4.assign({p.dir.write("locked", "content")});
    ASSERT_EQ(p.zip.AddWizardItem(false), library_success);
    p.open();
    const struct { const char *typed, *password; } cases[] = {{"", "secret"}, {"another", "another"}};
    for (const auto& c : cases) {
        p.zip.SaveChangedFile(p.view(), 0, c.typed);
        p.session.ZipPassword = c.password;
        p.List1.selected = 0;
        p.zip.ExtractSelected(p.view());
        EXPECT_EQ(p.work("locked"), "content");
        EXPECT_TRUE(p.zip.library().open(p.dir.path("a.zip"))->archive.members()[0].is_encrypted());
    }
}

TEST(NewZip, SavesAChangedFileInItsPlace) {
    ZipProgram p(ArchiveBuilder().add("Dir/A.txt", "old").add("b", "2").finish());
    p.open();
    p.dir.write("work/Dir/A.txt", "changed");
    p.zip.SaveChangedFile(p.view(), 0, {});
    EXPECT_THAT(p.names(), ElementsAre("dir/a.txt", "b"));
    EXPECT_EQ(std::filesystem::current_path(), p.dir.path());
    p.zip.ExtractSelected(p.view());
    EXPECT_EQ(p.work("Dir/A.txt"), "changed");
    p.platform.expect_message("No file was select to save changes to");
    p.zip.SaveChangedFile(p.view(), {}, {});
}

TEST(NewZip, AddsTheChosenFilesAndCopiesThemToWorkDir) {
    ZipProgram p(ArchiveBuilder().add("a", "1").finish());
    p.open();
    p.dir.write("from/not chosen", "x");
    p.add_by_chooser("a new file.txt", "new");
    EXPECT_THAT(p.names(), ElementsAre("a", "a new file.txt"));
    EXPECT_EQ(p.work("a new file.txt"), "new");
    EXPECT_EQ(p.zip.extracted_name(1), "a new file.txt");
    EXPECT_EQ(p.windows.loaded<encoder::cmdg>(), nullptr);
    EXPECT_EQ(std::filesystem::current_path(), p.dir.path());
}

TEST(NewZip, AFileAddedOutOfWorkDirIsItsOwnCopy) {
    ZipProgram p(ArchiveBuilder().add("a", "1").finish());
    p.session.WorkDir = p.dir.make_directory("from");
    p.open();
    p.add_by_chooser("new", "content");
    EXPECT_EQ(p.zip.extracted_name(1), "new");
    EXPECT_EQ(p.dir.read("from/new"), "content");
}

TEST(NewZip, AnArchiveShownInLowerCaseIsFoundAsItIsWritten) {
    ZipProgram p(ArchiveBuilder().add("a", "1").finish());
    p.session.SelectedDir = p.dir.make_directory("Letters");
    std::filesystem::rename(p.dir.path("a.zip"), p.dir.path("Letters/a.zip"));
    p.Label21.text = text::to_lower(p.dir.path("Letters/a.zip"));
    p.open();
    p.zip.SaveChangedFile(p.view(), 0, {});
    EXPECT_EQ(std::filesystem::current_path(), p.session.SelectedDir);
}

TEST(NewZip, ThePasswordStaysOnForAdditionsUntilAnExtractionWithoutOne) {
    ZipProgram p(ArchiveBuilder().add("a", "1").finish());
    const auto add_by_wizard = [&](const char* name) {
        p.main_window.List4.assign({p.dir.write(name, "content")});
        EXPECT_EQ(p.zip.AddWizardItem(false), library_success);
        return p.zip.library().open(p.dir.path("a.zip"))->archive.members().back().is_encrypted();
    };
    EXPECT_FALSE(add_by_wizard("plain"));
    p.session.ZipPassword = "secret";
    EXPECT_TRUE(add_by_wizard("locked"));
    p.open();
    EXPECT_EQ(p.work("locked"), "content");
    p.session.ZipPassword.clear();
    p.zip.ExtractSelected(p.view());
    EXPECT_FALSE(p.dir.has("work/locked"));
    EXPECT_FALSE(add_by_wizard("plain again"));
}

TEST(ContentsWindow, IsFilledAndEndsAViewOnlyRun) {
    ZipProgram p(ArchiveBuilder().add("A", "12345").add("b", "x", {.flags = encrypted_flag}).finish());
    provide_contents(p.context, p.zip);
    p.routes.report_contents();
    EXPECT_TRUE(p.session.ZipEncrypted);
    EXPECT_EQ(p.windows.loaded<Form1>(), nullptr);
    p.session.ViewOnlyRun = true;
    p.routes.show_contents();
    Form1* window = p.windows.loaded<Form1>();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->caption, "a.zip");
    EXPECT_EQ(window->List1.items().front(), "03/11/25 17:33\t5\t5\t0%\ta");
    EXPECT_EQ(window->Label1.text, "6");
    EXPECT_EQ(window->Label5.text, "2 items");
    EXPECT_EQ(window->left, (p.platform.width_of_screen - window->width) / 2);
    p.dir.write("a.zip", "no archive any more, just some words");
    p.routes.show_contents();
    window = p.windows.loaded<Form1>();
    EXPECT_EQ(window->List1.count(), 0U);  // nothing of the previous one
    EXPECT_EQ(window->Label5.text, "");
    EXPECT_TRUE(tests::ends_process([&] { controls::run(window->Command1.click); }));
    EXPECT_EQ(p.windows.loaded<Form1>(), nullptr);
}

TEST(ContentsWindow, NamesEveryControlOnce) {
    ZipProgram p(ArchiveBuilder().finish());
    Form1 window(p.context);
    std::set<std::string> names;
    std::set<const void*> controls_named;
    visit_controls(window, [&](const std::string& name, const std::string& role, auto& control) {
        EXPECT_TRUE(names.insert(name).second);
        EXPECT_TRUE(controls_named.insert(&control).second);
        EXPECT_FALSE(role.empty());
    });
    EXPECT_EQ(names.size(), 11U);
}

}  // namespace
}  // namespace quill::zip
