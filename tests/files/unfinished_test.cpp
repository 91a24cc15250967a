#include "files/unfinished.h"

#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
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
    void put(const std::string& name, int hours) const {
        const std::string path = dir.write(name, "half");
        const timespec at{std::time(nullptr) - hours * 3600, 0};
        const timespec times[2] = {at, at};
        ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    }

    /// Returns the number of a process that has ended.
    static pid_t gone() {
        const pid_t child = fork();
        if (child == 0) _exit(0);
        waitpid(child, nullptr, 0);
        return child;
    }

    tests::TemporaryDirectory dir;
};

TEST_F(Abandoned, OnlyOldOnesOfProcessesThatAreGoneAreRemoved) {
    const std::string dead = std::to_string(gone());
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
