#include "files/moving.h"

#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace quill::files {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;
using tests::TemporaryDirectory;

TEST(Moving, TakesAFreeNameAndReplacesNothing) {
    for (const char* parent : {"/tmp", "/dev/shm"}) {  // by a rename, and between file systems
        SCOPED_TRACE(parent);
        const TemporaryDirectory target(parent), dir;
        const std::string from = dir.write("letter.txt", "dear");
        fs::permissions(from, fs::perms::owner_read | fs::perms::owner_write);
        fs::last_write_time(from, fs::last_write_time(from) - std::chrono::hours(100));
        const auto time = fs::last_write_time(from);
        target.write("d/letter.txt", "the user's own");
        const Result<std::string> moved = move_to_free_name(from, target.path("d/letter.txt"));
        ASSERT_TRUE(moved.ok());
        EXPECT_EQ(*moved, target.path("d/letter (2).txt"));
        EXPECT_EQ(target.read("d/letter (2).txt"), "dear");
        EXPECT_EQ(target.read("d/letter.txt"), "the user's own");
        EXPECT_EQ(fs::status(*moved).permissions(), fs::perms::owner_read | fs::perms::owner_write);
        EXPECT_EQ(fs::last_write_time(*moved), time);
        EXPECT_EQ(dir.names(), Names{});
    }
}

TEST(Moving, AFileThatIsWrittenMeanwhileStaysAndHasNoCopy) {
    const struct {
        const char* what;
        void (*happens)(const TemporaryDirectory&);
    } cases[] = {{"cut short", [](auto& dir) { fs::resize_file(dir.path("letter"), 10); }},
                 {"appended to", [](auto& dir) { dir.write("letter", std::string(2000, 'b')); }},
                 {"replaced", [](auto& dir) { fs::rename(dir.write("new", "other"), dir.path("letter")); }}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const TemporaryDirectory target("/dev/shm"), dir;
        const std::string from = dir.write("letter", std::string(1000, 'a'));
        const auto meanwhile = [&](std::uint64_t) {
            c.happens(dir);
            return true;
        };
        const Result<std::string> moved = move_to_free_name(from, target.path("letter"), meanwhile);
        ASSERT_FALSE(moved.ok());
        EXPECT_EQ(moved.error().code, ErrorCode::io);
        EXPECT_EQ(target.names(), Names{});
        EXPECT_EQ(dir.names(), Names{"letter"});
    }
}

TEST(Moving, CanBeStopped) {
    const TemporaryDirectory target("/dev/shm"), dir;
    const std::string from = dir.write("letter", "dear");
    const Result<std::string> moved = move_to_free_name(from, target.path("letter"), [](auto) { return false; });
    ASSERT_FALSE(moved.ok());
    EXPECT_EQ(moved.error().code, ErrorCode::cancelled);
    EXPECT_EQ(dir.read("letter"), "dear");
    EXPECT_EQ(target.names(), Names{});
}

TEST(Moving, ACopyLeavesTheOriginal) {
    const TemporaryDirectory dir;
    EXPECT_EQ(*copy_to_free_name(dir.write("letter", "dear"), dir.path("d/letter")), dir.path("d/letter"));
    EXPECT_EQ(dir.read("d/letter"), dir.read("letter"));
}

}  // namespace
}  // namespace quill::files
