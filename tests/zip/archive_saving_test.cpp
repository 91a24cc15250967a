#include "zip/archive_saving.h"

#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using tests::ArchiveBuilder;
using tests::WindowProgram;

/// Opens an archive of a directory, a whole member, a damaged one, and a refused one; selects all.
arcview& open_mixed(WindowProgram& p) {
    p.platform.expect_message("1 member is damaged");
    arcview& w = p.open();
    w.List1.selected = 0;
    w.List1.selected_rows = {0, 1, 2, 3};
    return w;
}

std::string mixed() {
    return ArchiveBuilder()
        .add("d/", "")
        .add("letter", "as stored")
        .add("bad", "2", {.crc = 1})
        .add("strange", "3", {.method = 77})
        .finish();
}

TEST(Saving, OnlyChangedFilesGoIntoTheArchive) {
    WindowProgram p(mixed());
    arcview& w = open_mixed(p);
    p.platform.expect_message("nothing to save");
    w.savzipch.click();
    EXPECT_EQ(p.dir.read("a.zip"), mixed());
    EXPECT_FALSE(w.undo.enabled);
    p.change(1, "changed");
    w.savzipch.click();
    EXPECT_EQ(p.stored(1), "changed");
    const Result<Archive> archive = Archive::open(p.dir.path("a.zip"));
    EXPECT_EQ(archive->members()[2].crc, 1U) << "the damaged member is as it was";
    EXPECT_EQ(archive->members()[3].method, 77U);
}

TEST(Saving, WhatReplacesADamagedMemberIsAskedAbout) {
    for (const char* answer : {"&Save", "&Leave out"}) {
        SCOPED_TRACE(answer);
        WindowProgram p(mixed());
        arcview& w = open_mixed(p);
        p.change(1, "changed");
        p.change(2, "mended");
        p.platform.expect_choice("it is damaged", answer);
        w.savzipch.click();
        EXPECT_EQ(p.stored(1), "changed");
        EXPECT_EQ(p.stored(2) == "mended", answer == std::string("&Save"));
    }
    WindowProgram p(mixed());
    arcview& w = open_mixed(p);
    p.change(1, "changed");
    p.change(2, "mended");
    p.platform.expect_choice("letter was changed", "Save &all");
    p.platform.expect_choice("it is damaged", "&Cancel");
    w.close();
    EXPECT_EQ(p.dir.read("a.zip"), mixed());
}

}  // namespace
}  // namespace quill::zip
