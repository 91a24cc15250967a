#include "zip/foreign_changes.h"

#include "zip/archive_actions.h"
#include "zip/archive_document.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using tests::ArchiveBuilder;
using tests::WindowProgram;

std::string ours() {
    return ArchiveBuilder().add("letter", "as stored").add("other", "2").add("third", "3").finish();
}

/// Replaces the archive like other programs.
void replace(WindowProgram& p, const std::string& archive) {
    std::filesystem::rename(p.dir.write("new", archive), p.dir.path("a.zip"));
}

TEST(ForeignChanges, ReadingTheArchiveAgainAsksAboutChangedFiles) {
    const struct {
        const char* answer;
        std::vector<std::string> rows;
        const char *stored, *in_file;  // of the letter
    } cases[] = {{"&Save", {"first", "letter"}, "by an editor", "by an editor"},
                 {"&Leave out", {"first", "letter"}, "theirs", "theirs"},
                 {"&Cancel", {"letter", "other", "third"}, nullptr, "by an editor"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.answer);
        WindowProgram p(ours());
        arcview& w = p.open();
        const std::string file = p.file(0);
        p.change(0, "by an editor");
        replace(p, ArchiveBuilder().add("first", "1").add("letter", "theirs").finish());
        p.platform.expect_choice("changed by another program", "&Reload");
        p.platform.expect_choice("letter was changed", c.answer, [&] { EXPECT_EQ(p.names().size(), 3U); });
        w.watch.tick();
        EXPECT_EQ(p.names(), c.rows);
        EXPECT_EQ(p.dir.read(file), "by an editor");
        const std::size_t row = c.rows.size() == 2 ? 1 : 0;
        EXPECT_EQ(p.bytes_of(row), c.in_file);
        EXPECT_EQ(w.undo.enabled, c.answer == std::string("&Save"));
        EXPECT_EQ(p.dir.has("temp/a.zip/other"), c.stored == nullptr) << "it goes where its member is gone";
        if (c.stored == nullptr) continue;
        EXPECT_EQ(p.stored(row), c.stored);
    }
}

TEST(ForeignChanges, AChangedFileWhoseMemberIsGoneIsAddedAgain) {
    WindowProgram p(ours());
    arcview& w = p.open();
    p.change(0, "by an editor");
    p.change(1, "changed, too");
    replace(p, ArchiveBuilder().add("third", "theirs").finish());
    p.platform.expect_choice("changed by another program", "&Reload");
    p.platform.expect_choice("letter was changed", "Save &all");
    w.watch.tick();
    EXPECT_THAT(p.names(), ElementsAre("third", "letter", "other"));
    EXPECT_EQ(p.stored(1), "by an editor");
    EXPECT_EQ(p.stored(2), "changed, too");
    EXPECT_EQ(p.bytes_of(0), "theirs");
}

TEST(ForeignChanges, ReadingTheArchiveAgainReportsDamage) {
    WindowProgram p(ours());
    arcview& w = p.open();
    replace(p, ArchiveBuilder().add("letter", "x", {.crc = 1}).finish());
    p.platform.expect_choice("changed by another program", "&Reload");
    p.platform.expect_message("1 member is damaged");
    w.watch.tick();
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::damaged);
    replace(p, "no archive any more");
    p.platform.expect_choice("changed by another program", "&Reload");
    p.platform.expect_message("can't be opened");
    w.watch.tick();
    EXPECT_THAT(p.names(), ElementsAre("letter"));
}

TEST(ForeignChanges, WhatLeavesTheBytesIsNoChange) {
    const struct {
        const char* what;
        void (*happens)(WindowProgram&);
    } cases[] = {
        {"other permissions",
         [](auto& p) { std::filesystem::permissions(p.dir.path("a.zip"), std::filesystem::perms::owner_all); }},
        {"a second name",
         [](auto& p) { std::filesystem::create_hard_link(p.dir.path("a.zip"), p.dir.path("second name")); }},
        {"a copy in its place", [](auto& p) { replace(p, ours()); }},
        {"another date", [](auto& p) { std::filesystem::last_write_time(p.dir.path("a.zip"), {}); }},
        {"the same bytes once more", [](auto& p) { p.dir.write("a.zip", ours()); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        WindowProgram p(ours());
        arcview& w = p.open();
        c.happens(p);
        w.watch.tick();
        add_files(w, {p.dir.write("from/new", "n")});
        EXPECT_EQ(w.List1.count(), 4U);
        w.undo.click();
        EXPECT_EQ(p.dir.read("a.zip"), ours());
    }
}

TEST(ForeignChanges, BytesOfTheSameSizeThatDifferAreAChange) {
    WindowProgram p(ours());
    arcview& w = p.open();
    std::string theirs = ours();
    theirs[theirs.find("as stored")] = 'A';
    p.dir.write("a.zip", theirs);
    p.platform.expect_choice("changed by another program", "&Cancel");
    w.watch.tick();
    w.watch.tick();
}

TEST(ForeignChanges, GoingOnWithOursKeepsWhoMayReadIt) {
    WindowProgram p(ours());
    const auto owner_only = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
    std::filesystem::permissions(p.dir.path("a.zip"), owner_only);
    arcview& w = p.open();
    replace(p, ArchiveBuilder().add("theirs", "3").finish());
    p.platform.expect_choice("changed by another program", "&Go on with mine");
    p.platform.expect_message("a (2).zip");
    w.watch.tick();
    EXPECT_EQ(p.dir.read("a (2).zip"), ours());
    EXPECT_EQ(std::filesystem::status(p.dir.path("a (2).zip")).permissions(), owner_only);
}

TEST(ForeignChanges, OursIsNotWrittenWhereItsBytesWereChanged) {
    WindowProgram p(ours());
    arcview& w = p.open();
    std::filesystem::create_hard_link(p.dir.path("a.zip"), p.dir.path("second name"));
    replace(p, ArchiveBuilder().add("theirs", "3").finish());
    p.platform.expect_choice("changed by another program", "&Go on with mine",
                             [&] { p.dir.write("second name", std::string(ours().size(), 'x')); });
    p.platform.expect_message("could not be written");
    w.watch.tick();
    EXPECT_FALSE(p.dir.has("a (2).zip"));
}

}  // namespace
}  // namespace quill::zip
