#include "zip/archive_moving.h"

#include "zip/archive_actions.h"
#include "zip/archive_panel.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using tests::ArchiveBuilder;
using tests::WindowProgram;

std::string three_members() {
    return ArchiveBuilder().add("letter", "as stored").add("d/below", "2").add("empty/", "").finish();
}

/// Moves the files to the directory `target`.
void move_to(WindowProgram& p, arcview& w, const std::string& target) {
    show_panel_directory(w, p.dir.path(target));
    w.Command2.click();
}

TEST(MovingFiles, AllGoAndReplaceNone) {
    WindowProgram p(three_members());
    arcview& w = p.open();
    p.dir.write("target/letter", "the user's own");
    w.Image1(2).click();
    EXPECT_TRUE(w.Picture2.visible);
    w.Dir1.path = p.dir.path("target");
    w.Dir1.change();
    EXPECT_EQ(w.Label5.text, p.dir.path("target"));
    p.platform.expect_input("new folder", "deeper");
    w.Command3.click();
    EXPECT_EQ(w.Dir1.path, p.dir.path("target/deeper"));
    w.Dir1.path = p.dir.path("target");
    w.Command2.click();
    EXPECT_EQ(p.window(), nullptr);
    EXPECT_EQ(p.dir.read("target/letter"), "the user's own");
    EXPECT_EQ(p.dir.read("target/letter (2)"), "as stored");
    EXPECT_EQ(p.dir.read("target/d/below"), "2");
    EXPECT_TRUE(p.dir.has("target/empty"));
    EXPECT_FALSE(p.dir.has("temp/a.zip"));
}

TEST(MovingFiles, TheUsersOwnFileStaysWhereItIs) {
    for (const char* target : {"target", "."}) {
        SCOPED_TRACE(target);
        WindowProgram p(three_members());
        p.unpack_beside();
        arcview& w = p.open();
        add_files(w, {p.dir.write("own", "the user's")});
        w.Image1(2).click();
        move_to(p, w, target);
        EXPECT_EQ(p.window(), nullptr);
        EXPECT_EQ(p.dir.read("own"), "the user's");
        EXPECT_EQ(p.dir.read(std::string(target) + "/own"), "the user's");
        EXPECT_EQ(p.dir.read(std::string(target) + "/letter"), "as stored");
        EXPECT_TRUE(p.dir.has(std::string(target) + "/empty"));
        EXPECT_FALSE(p.dir.has("own (2)"));
        EXPECT_EQ(p.dir.has("letter"), std::string(target) == ".");
    }
}

TEST(MovingFiles, TheSelectedOnesGoAndTheWindowStays) {
    WindowProgram p(three_members());
    arcview& w = p.open();
    add_files(w, {p.dir.write("from/new", "n")});
    w.List1.selected = 0;
    w.mvs.click();
    EXPECT_TRUE(w.take_selected.chosen);
    EXPECT_THAT(w.take_selected.caption, HasSubstr("(1)"));
    p.platform.expect_message("1 file moved");
    move_to(p, w, "target");
    ASSERT_NE(p.window(), nullptr);
    EXPECT_FALSE(w.Picture2.visible);
    EXPECT_EQ(p.dir.read("target/letter"), "as stored");
    EXPECT_FALSE(p.dir.has("temp/a.zip/letter"));
    EXPECT_EQ(p.bytes_of(1), "2");
    EXPECT_EQ(row_details(w, 0).condition, RowCondition::verified);
    // It is unpacked again if needed.
    w.mvs.click();
    p.platform.expect_message("1 file moved");
    move_to(p, w, "target");
    EXPECT_EQ(p.dir.read("target/letter (2)"), "as stored");
    // Moved files stay, whatever the window does later.
    w.undo.click();
    w.rpnex.click();
    EXPECT_EQ(p.dir.read("target/letter"), "as stored");
}

TEST(MovingFiles, WhatCannotBeMovedIsReportedAndStays) {
    WindowProgram p(three_members());
    arcview& w = p.open();
    p.dir.write("target/d", "a file where a directory is needed");
    w.Image1(2).click();
    p.platform.expect_message("1 file could not be moved");
    move_to(p, w, "target");
    ASSERT_NE(p.window(), nullptr);
    EXPECT_TRUE(w.Picture2.visible);
    EXPECT_EQ(p.dir.read("target/letter"), "as stored");
    EXPECT_EQ(p.bytes_of(1), "2");
}

TEST(MovingFiles, ASelectedMemberWithoutAFileIsReported) {
    WindowProgram p(ArchiveBuilder().add("strange", "3", {.method = 77}).finish());
    p.platform.expect_message("could not be unpacked");
    arcview& w = p.open();
    w.mvs.click();
    p.platform.expect_message("1 file could not be moved");
    move_to(p, w, "target");
    EXPECT_FALSE(p.dir.has("target/strange"));
}

}  // namespace
}  // namespace quill::zip
