#include "htx/spider/link_hunt.h"

#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <gmock/gmock.h>
#include <string>

namespace quill::htx {
namespace {

using testing::ElementsAre;

class LinkHunt : public testing::Test {
  protected:
    Hunt hunt(const std::string& root, std::size_t most = most_hunted_files, const HuntWatch& watch = {}) const {
        SiteFiles site(root);
        return hunt_links(site, {"index.htm"}, watch, most);
    }

    tests::TemporaryDirectory directory;
};

TEST_F(LinkHunt, GoesBreadthFirstAndTakesEachFileOnce) {
    directory.write("index.htm", "<a href=b.htm><a href=a.htm><img src=i.png><link href=s.css><a href='#x'>");
    directory.write("a.htm", "<a href=deep/c.htm><a href=index.htm>");
    directory.write("b.htm", "<a href=a.htm><a href=gone.htm><img src=i.png>");
    directory.write("s.css", "p{background:url(back.gif)}");
    directory.write("deep/c.htm", "<a href='../index.htm'><a href='d%20d.htm'>");
    for (const char* name : {"i.png", "back.gif", "deep/d d.htm", "unlinked.htm"}) directory.write(name, "x");
    const Hunt found = hunt(directory.path());
    EXPECT_EQ(found.end, HuntEnd::complete);
    EXPECT_THAT(found.files,
                ElementsAre("index.htm", "b.htm", "a.htm", "i.png", "s.css", "deep/c.htm", "back.gif", "deep/d d.htm"));
}

TEST_F(LinkHunt, NeverLeavesTheDirectory) {
    directory.write("secret.htm", "x");
    directory.write("site/index.htm",
                    "<a href=../secret.htm><a href='%2e%2e/secret.htm'><a href=out.htm><a href=out/secret.htm>"
                    "<a href='file://" +
                        directory.path("secret.htm") + "'><a href='" + directory.path("secret.htm") +
                        "'><a href=in.htm><a href=dir><a href=pipe.htm>");
    std::filesystem::create_symlink(directory.path("secret.htm"), directory.path("site/out.htm"));
    std::filesystem::create_symlink(directory.path(), directory.path("site/out"));
    std::filesystem::create_symlink("index.htm", directory.path("site/in.htm"));
    std::filesystem::create_symlink("/dev/zero", directory.path("site/pipe.htm"));
    directory.make_directory("site/dir");
    EXPECT_THAT(hunt(directory.path("site")).files, ElementsAre("index.htm", "in.htm"));
}

TEST_F(LinkHunt, ALinkToTheDirectoryItselfEndsSomewhere) {
    directory.write("index.htm", "<a href=loop/index.htm>");
    std::filesystem::create_symlink(".", directory.path("loop"));
    EXPECT_THAT(hunt(directory.path()).files, ElementsAre("index.htm", "loop/index.htm"));
}

TEST_F(LinkHunt, FindsNamesOfAnotherCaseOrCharacterSet) {
    directory.write("index.htm",
                    "<img src=PICTURE.JPG><img src='\xE9.gif'><img src='a%20b.gif'><img src=d/%C3%A9.gif>");
    for (const char* name : {"Picture.jpg", "\xC3\xA9.gif", "a%20b.gif", "D/\xE9.gif"}) directory.write(name, "x");
    EXPECT_THAT(hunt(directory.path()).files,
                ElementsAre("index.htm", "Picture.jpg", "\xC3\xA9.gif", "a%20b.gif", "D/\xE9.gif"));
}

TEST_F(LinkHunt, StopsAtItsLimitAndAtTheUsersWish) {
    for (int i = 0; i < 20; ++i) {
        const std::string next = std::to_string(i + 1) + ".htm";
        directory.write(i == 0 ? "index.htm" : std::to_string(i) + ".htm", "<a href=" + next + ">");
    }
    const Hunt limited = hunt(directory.path(), 5);
    EXPECT_EQ(limited.end, HuntEnd::too_many);
    EXPECT_EQ(limited.files.size(), 5U);
    const Hunt stopped = hunt(directory.path(), 1000, [](std::size_t found) { return found < 3; });
    EXPECT_EQ(stopped.end, HuntEnd::stopped);
    EXPECT_EQ(stopped.files.size(), 3U);
}

}  // namespace
}  // namespace quill::htx
