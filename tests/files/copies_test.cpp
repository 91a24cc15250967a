#include "files/copies.h"

#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace quill::files {
namespace {

TEST(Copies, AreFoundInTheRowOfANameByTheirBytesAlone) {
    const tests::TemporaryDirectory dir;
    Copies copies;
    EXPECT_EQ(copies.find("a.txt", "Cat"), std::nullopt);
    dir.write("a.txt", "Cat");
    dir.write("a (2).txt", "Dog");
    dir.write("a (3).txt", "");
    dir.write("a (5).txt", "Far");  // beyond the end of the series
    dir.write("b.txt", "Bee");
    EXPECT_EQ(copies.find("a.txt", "Cat"), "a.txt");
    EXPECT_EQ(copies.find("a.txt", "Dog"), "a (2).txt");
    EXPECT_EQ(copies.find("a.txt", ""), "a (3).txt");
    for (const char* other : {"Far", "Bee", "cat", "Cats", "D"}) EXPECT_EQ(copies.find("a.txt", other), std::nullopt);
    dir.write("a (4).txt", "New");
    EXPECT_EQ(copies.find("a.txt", "New"), "a (4).txt") << "the row has grown";
    EXPECT_EQ(copies.find("a.txt", "Far"), "a (5).txt");
    dir.write("a.txt", "COW");
    EXPECT_EQ(copies.find("a.txt", "Cat"), std::nullopt) << "what was seen before is compared again";
}

TEST(Copies, LinksAndDirectoriesAreNone) {
    const tests::TemporaryDirectory dir;
    dir.write("elsewhere", "Cat");
    ASSERT_EQ(symlink("elsewhere", "a"), 0);
    dir.make_directory("a (2)");
    ASSERT_EQ(mkfifo("a (3)", 0600), 0);
    dir.write("a (4)", "Cat");
    EXPECT_EQ(Copies().find("a", "Cat"), "a (4)");
}

}  // namespace
}  // namespace quill::files
