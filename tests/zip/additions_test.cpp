#include "zip/additions.h"

#include "zip/archive_actions.h"
#include "zip/archive_document.h"
#include "zip/archive_rows.h"
#include "zip/archive_window_fixture.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using tests::ArchiveBuilder;
using tests::WindowProgram;

std::string one_member() {
    return ArchiveBuilder().add("letter", "as stored").finish();
}

TEST(Additions, ATakenNameIsAskedAbout) {
    const struct {
        const char* what;
        std::vector<std::string> files, answers, names, contents;
    } cases[] = {
        {"a member is replaced", {"x/letter"}, {"&Replace it"}, {"letter"}, {"x"}},
        {"both are kept", {"x/letter"}, {"&Keep both"}, {"letter", "letter (2)"}, {"as stored", "x"}},
        {"the user cancels", {"x/letter", "x/new"}, {"&Cancel"}, {"letter"}, {"as stored"}},
        {"two new ones, the last wins", {"x/new", "y/new"}, {"&Replace it"}, {"letter", "new"}, {"as stored", "y"}},
        {"two new ones, both kept",
         {"x/new", "y/new"},
         {"&Keep both"},
         {"letter", "new", "new (2)"},
         {"as stored", "x", "y"}},
        {"one answer for all",
         {"x/letter", "y/letter", "x/new", "y/new"},
         {"Keep &both of all"},
         {"letter", "letter (2)", "letter (3)", "new", "new (2)"},
         {"as stored", "x", "y", "x", "y"}},
        {"a free name that another file has",
         {"x/letter (2)", "x/letter"},
         {"&Keep both"},
         {"letter", "letter (2)", "letter (3)"},
         {"as stored", "x", "x"}},
        {"a replaced member is replaced again", {"x/letter", "y/letter"}, {"Replace &all"}, {"letter"}, {"y"}},
        {"one file twice", {"x/new", "x/new"}, {}, {"letter", "new"}, {"as stored", "x"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        WindowProgram p(one_member());
        arcview& w = p.open();
        std::vector<std::string> paths;
        for (const std::string& file : c.files) paths.push_back(p.dir.write(file, file.substr(0, 1)));
        for (const std::string& answer : c.answers) p.platform.expect_choice("", answer);
        add_files(w, paths);
        EXPECT_EQ(p.names(), c.names);
        for (std::size_t row = 0; row < c.contents.size(); ++row) {
            EXPECT_EQ(p.stored(row), c.contents[row]);
            EXPECT_EQ(p.bytes_of(row), c.contents[row]);
        }
    }
}

TEST(Additions, AFileAndADirectoryOfOneNameAreAskedAbout) {
    const struct {
        const char* what;
        const char* file;  ///< is written and added with all that is in its first directory
        const char* answer;
        std::vector<std::string> names;
    } cases[] = {
        {"a file like a directory", "from/d", "&Keep both", {"d/below", "letter", "d (2)"}},
        {"the user cancels", "from/d", "&Cancel", {"d/below", "letter"}},
        {"a directory like a file",
         "from/letter/x/y",
         "&Keep both",
         {"d/below", "letter", "letter (2)/", "letter (2)/x/", "letter (2)/x/y"}},
        {"a directory, and the user cancels", "from/letter/x/y", "&Cancel", {"d/below", "letter"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        WindowProgram p(ArchiveBuilder().add("d/below", "2").add("letter", "as stored").finish());
        arcview& w = p.open();
        p.dir.write(c.file, "new");
        const std::string name = std::string(c.file).substr(5);
        p.platform.expect_choice("called " + name.substr(0, name.find('/')), c.answer);
        add_files(w, {p.dir.path("from/" + name.substr(0, name.find('/')))});
        EXPECT_EQ(p.names(), c.names);
        EXPECT_EQ(p.stored(1), "as stored");
        if (c.names.size() == 2) continue;
        EXPECT_EQ(p.stored(c.names.size() - 1), "new");
    }
}

TEST(Additions, ADirectoryGoesInWithItsTreeAndNoLinkIsFollowed) {
    WindowProgram p(ArchiveBuilder().add("tree/a", "old").finish());
    p.dir.write("secret/key", "not to be packed");
    p.dir.write("from/tree/a", "new");
    p.dir.write("from/tree/d/b", "below");
    p.dir.make_directory("from/tree/empty");
    std::filesystem::create_directory_symlink(p.dir.path("secret"), p.dir.path("from/tree/d/out"));
    std::filesystem::create_symlink(p.dir.path("secret/key"), p.dir.path("from/link"));
    arcview& w = p.open();
    p.platform.expect_choice("tree/a is in the archive", "&Keep both");
    add_files(w, {p.dir.path("from/tree/"), p.dir.path("from/link")});
    EXPECT_THAT(p.names(), ElementsAre("tree/a", "tree/", "tree/a (2)", "tree/d/", "tree/d/b", "tree/d/out",
                                       "tree/empty/", "link"));
    EXPECT_EQ(p.stored(0), "old");
    EXPECT_EQ(p.stored(2), "new");
    EXPECT_EQ(p.stored(4), "below");
    EXPECT_EQ(p.stored(5), p.dir.path("secret"));
    EXPECT_EQ(p.stored(7), p.dir.path("secret/key"));
    EXPECT_EQ(p.bytes_of(4), "below");
    EXPECT_FALSE(std::filesystem::is_symlink(p.session.WorkDir + "/tree/d/out"));
    const std::string work_dir = p.session.WorkDir;
    w.rpnex.click();
    EXPECT_FALSE(std::filesystem::exists(work_dir));
}

TEST(Additions, WhatCannotBeAddedIsSaidAndTheRestGoesIn) {
    WindowProgram p(one_member());
    arcview& w = p.open();
    p.dir.write("from/a", "1");
    ASSERT_EQ(mkfifo(p.dir.path("from/pipe").c_str(), 0600), 0);
    p.platform.expect_message("from/pipe: not a regular file.\nmissing: not found.\na.zip: the archive itself.");
    add_files(w, {p.dir.path("from"), p.dir.path("missing"), p.dir.path("a.zip")});
    EXPECT_THAT(p.names(), ElementsAre("letter", "from/", "from/a"));
}

TEST(Additions, AReplacedMembersChangedFileStaysOnTheDisk) {
    WindowProgram p(one_member());
    arcview& w = p.open();
    const std::string file = p.file(0);
    p.change(0, "by an editor");
    p.platform.expect_choice("letter is in the archive", "&Replace it");
    add_files(w, {p.dir.write("from/letter", "new")});
    EXPECT_EQ(p.dir.read(file), "by an editor");
    EXPECT_EQ(p.bytes_of(0), "new");
    EXPECT_EQ(p.stored(0), "new");
}

}  // namespace
}  // namespace quill::zip
