#include "integration/file_icons.h"

#include "support/temporary_directory.h"

#include <gtest/gtest.h>

namespace quill::integration {
namespace {

TEST(FileIcons, TellTheTypeByTheNameAndAreBlankForWhatIsNotThere) {
    const tests::TemporaryDirectory dir;
    const FileIcon picture = getticon(dir.write("a.JPG", "x"), 1);
    EXPECT_EQ(picture.name, "image-x-generic");
    EXPECT_TRUE(picture.small);
    EXPECT_EQ(getticon(dir.write("b.jpg", "y"), 1), picture);
    EXPECT_NE(getticon(dir.write("c.txt", "z"), 1).name, picture.name);
    EXPECT_FALSE(getticon(dir.path("a.JPG"), 2).small);
    EXPECT_EQ(getticon(dir.path("gone.jpg"), 1).name, "");
    EXPECT_EQ(getticon(dir.path(), 1).name, "");
}

}  // namespace
}  // namespace quill::integration
