#include "archive/archive_builder.h"
#include "cli/command_fixture.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using tests::ArchiveBuilder;

class BookCommand : public CommandTest {
  protected:
    std::string path(const std::string& name) const { return directory.path(name); }

    void write_site() const {
        directory.write("site/index.html", "<title>Start &amp; end</title><a href='b/two.htm'><img src=a.png>");
        directory.write("site/b/two.htm", "<a href=../index.html><a href=gone.htm>");
        directory.write("site/a.png", "picture");
    }
};

TEST_F(BookCommand, MakesABookOfAPageAndAllThatItLeadsTo) {
    write_site();
    EXPECT_EQ(call({"book", "create", "--from", path("site/index.html"), "--output", path("b.htx")}), ExitStatus::good);
    EXPECT_EQ(out, "index.html\nb/two.htm\na.png\nindex.r29\n");
    EXPECT_EQ(call({"book", "list", path("b.htx")}), ExitStatus::good);
    EXPECT_EQ(out,
              "b/two.htm\t39\tpage\t\nindex.html\t65\tpage\tStart & end\na.png\t7\tfile\t\nindex.r29\t18\twindow\t\n");
    EXPECT_EQ(call({"book", "check", path("b.htx")}), ExitStatus::damaged);
    EXPECT_EQ(out, "b/two.htm\t1\tgone.htm\tmissing\n");
    EXPECT_EQ(call({"book", "check", "--json", path("b.htx")}), ExitStatus::damaged);
    EXPECT_EQ(out, "[{\"page\": \"b/two.htm\", \"line\": 1, \"address\": \"gone.htm\", \"problem\": \"missing\"}]\n");
    EXPECT_EQ(call({"book", "extract", path("b.htx"), "--into", path("out")}), ExitStatus::good);
    EXPECT_EQ(directory.read("out/b/two.htm"), directory.read("site/b/two.htm"));
    EXPECT_EQ(directory.read("out/index.r29"), "9495\r\n6960\r\n0\r\n0\r\n");
}

TEST_F(BookCommand, ARootGivesNamesAndFilesBesideTheStartPagesDirectory) {
    write_site();
    EXPECT_EQ(
        call({"book", "create", "--from", path("site/b/two.htm"), "--root", path("site"), "--output", path("b.htx")}),
        ExitStatus::good);
    EXPECT_EQ(out, "b/two.htm\nindex.html\na.png\nindex.r29\n");
    EXPECT_EQ(call({"book", "create", "--from", path("site/index.html"), "--root", path("site/b"), "--output",
                    path("c.htx")}),
              ExitStatus::failed);
    EXPECT_FALSE(directory.has("c.htx"));
}

TEST_F(BookCommand, MakesABookOfPictures) {
    directory.write("1/sea.jpg", "one");
    directory.write("2/sea.jpg", "two");
    EXPECT_EQ(call({"book", "create", "--pictures", "--output", path("b.htx"), path("1/sea.jpg"), path("2/sea.jpg")}),
              ExitStatus::good);
    EXPECT_EQ(out, "sea.jpg\nsea (2).jpg\n0001.htm\n0002.htm\nindex.r29\n");
    EXPECT_EQ(call({"book", "check", path("b.htx")}), ExitStatus::good) << out;
    EXPECT_EQ(call({"book", "extract", path("b.htx"), "--into", path("out")}), ExitStatus::good);
    EXPECT_EQ(directory.read("out/sea (2).jpg"), "two");
    EXPECT_EQ(directory.read("out/index.r29"), "15360\r\n10920\r\n0\r\n0\r\n");
    EXPECT_EQ(call({"book", "create", "--pictures", "--index", "--output", path("c.htx"), path("1/sea.jpg")}),
              ExitStatus::good);
    EXPECT_EQ(call({"book", "check", path("c.htx")}), ExitStatus::good) << out;
}

TEST_F(BookCommand, MakesNoBookOfWhatCantBeOne) {
    write_site();
    directory.write("old.htx", "old");
    const std::vector<std::vector<std::string>> cases = {
        {"--from", path("site/index.html"), "--output", path("old.htx")},
        {"--from", path("site/index.html"), "--output", path("book.zip")},
        {"--from", path("site/a.png"), "--output", path("b.htx")},
        {"--from", path("site/gone.html"), "--output", path("b.htx")},
        {"--from", path("site/index.html"), "--pictures", "--output", path("b.htx"), path("site/a.png")},
        {"--pictures", "--output", path("b.htx")},
        {"--pictures", "--output", path("b.htx"), path("site/a.png"), path("gone.png")},
        {"--output", path("b.htx")},
    };
    for (std::vector<std::string> arguments : cases) {
        arguments.insert(arguments.begin(), {"book", "create"});
        EXPECT_EQ(call(arguments), ExitStatus::failed) << arguments[3];
        EXPECT_THAT(directory.names(), ElementsAre("old.htx", "site"));
    }
    EXPECT_EQ(directory.read("old.htx"), "old");
}

TEST_F(BookCommand, APasswordLocksTheBook) {
    write_site();
    directory.write("password", "sesame\n");
    const std::vector<std::string> with_password = {"--password-file", path("password")};
    EXPECT_EQ(call({"book", "create", "--from", path("site/index.html"), "--output", path("b.htx"), with_password[0],
                    with_password[1]}),
              ExitStatus::good);
    EXPECT_EQ(call({"book", "check", path("b.htx")}), ExitStatus::damaged);
    EXPECT_EQ(out, "");
    EXPECT_EQ(call({"book", "check", path("b.htx"), with_password[0], with_password[1]}), ExitStatus::damaged);
    EXPECT_THAT(out, HasSubstr("gone.htm"));
}

TEST_F(BookCommand, ABookWithoutPagesHoldsNothing) {
    directory.write("b.htx", ArchiveBuilder().add("a.png", "x").finish());
    EXPECT_EQ(call({"book", "check", path("b.htx")}), ExitStatus::nothing);
    EXPECT_EQ(call({"book", "check", path("gone.htx")}), ExitStatus::failed);
}

}  // namespace
}  // namespace quill::cli
