#include "files/unfinished.h"

#include "support/abandoned_file.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quill::files {
namespace {

using Names = std::vector<std::string>;

TEST(Unfinished, NamesAreKnownAgain) {
    EXPECT_TRUE(is_unfinished_name(unfinished_name(0)));
    EXPECT_TRUE(is_unfinished_name(unfinished_name(4711)));
    for (const char* name : {".quill-1-0.part", ".quill-99999-12.part"}) EXPECT_TRUE(is_unfinished_name(name)) << name;
    for (const char* name :
         {"", ".quill-.part", ".quill-1.part", ".quill-1-.part", ".quill--1-0.part", ".quill-0-0.part",
          ".quill-1-0.part2", "quill-1-0.part", ".quill-1-0x.part", ".quill-1--2.part", ".quill-99999999999-0.part",
          ".quill-1 -0.part", ".quill-part", ".quill-"}) {
        EXPECT_FALSE(is_unfinished_name(name)) << name;
    }
}

class Abandoned : public testing::Test {
  protected:
    /// Puts a file there that was last changed `hours` ago.
    void put(const std::string& name, int hours) const { ASSERT_TRUE(tests::make_old(dir.write(name, "half"), hours)); }

    tests::TemporaryDirectory dir;
};

TEST_F(Abandoned, OnlyOldOnesOfProcessesThatAreGoneAreRemoved) {
    const std::string dead = std::to_string(tests::ended_process());
    const std::string old = ".quill-" + dead + "-0.part";
    const std::string young = ".quill-" + dead + "-1.part";
    const std::string live = ".quill-" + std::to_string(getpid()) + "-0.part";
    put(old, 25);
    put(young, 23);
    put(live, 25);
    put("mine.part", 99);
    put(".quill-notes.part", 99);
    const std::string directory = ".quill-" + dead + "-2.part";
    dir.make_directory(directory);
    remove_abandoned(dir.path());
    Names left{live, young, directory, ".quill-notes.part", "mine.part"};
    std::sort(left.begin(), left.end());
    EXPECT_EQ(dir.names(), left);
    remove_abandoned("absent");
}

TEST_F(Abandoned, AWorkFileGoesWithItsObjectUnlessItIsFinished) {
    {
        Unfinished kept(dir.write("kept", "x"));
        Unfinished dropped(dir.write("dropped", "x"));
        Unfinished replaced(dir.write("replaced", "x"));
        replaced = std::move(kept);
        replaced.finish();
        const Unfinished empty(dir.make_directory("empty"));
        const Unfinished full(dir.make_directory("full"));
        dir.write("full/result", "x");
    }
    EXPECT_EQ(dir.names(), (Names{"full", "kept"}));
}

TEST_F(Abandoned, ASignalHandlerRemovesAllThatIsUnfinished) {
    std::vector<Unfinished> files;
    for (int i = 0; i < 40; ++i) files.emplace_back(dir.write("part" + std::to_string(i), "x"));
    const Unfinished made(dir.make_directory("made"));
    const Unfinished full(dir.make_directory("full"));
    dir.write("full/result", "x");
    files[7].finish();
    remove_unfinished();
    EXPECT_EQ(dir.names(), (Names{"full", "part7"}));
}

}  // namespace
}  // namespace quill::files
