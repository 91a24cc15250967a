#include "zip/work_copies.h"

#include "archive/archive_builder.h"
#include "support/temporary_directory.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>

namespace quill::zip {
namespace {

using tests::ArchiveBuilder;
using tests::TemporaryDirectory;

/// An archive of one extracted member, in a separate work directory.
struct Extracted {
    TemporaryDirectory dir;
    std::string bytes;
    Archive archive;
    WorkCopies copies;

    explicit Extracted(std::string zip = ArchiveBuilder().add("letter", "12345").finish())
        : bytes(std::move(zip)), archive(*Archive::parse(bytes)) {
        copies.begin(dir.path());
        EXPECT_TRUE(extract_members(archive, {0}, MemberPaths(archive.members()), dir.path(), {},
                                    [&](const MemberResult& result) { copies.record(archive, result); })
                        .ok());
    }
};

TEST(WorkCopies, ReportsWhatBecameOfAFile) {
    const struct {
        const char* name;
        std::function<void(TemporaryDirectory&)> happens;
        CopyState state;
        bool is_removed;
    } cases[] = {
        {"nothing", [](auto&) {}, CopyState::untouched, true},
        {"written with the same bytes", [](auto& dir) { dir.write("letter", "12345"); }, CopyState::untouched, true},
        {"other bytes of the same size", [](auto& dir) { dir.write("letter", "54321"); }, CopyState::changed, false},
        {"the time put back",
         [](auto& dir) {
             const auto time = std::filesystem::last_write_time(dir.path("letter"));
             dir.write("letter", "54321");
             std::filesystem::last_write_time(dir.path("letter"), time);
         },
         CopyState::changed, false},
        {"replaced by a rename",
         [](auto& dir) { std::filesystem::rename(dir.write("new", "1234567"), dir.path("letter")); },
         CopyState::changed, false},
        {"deleted", [](auto& dir) { std::filesystem::remove(dir.path("letter")); }, CopyState::gone, true},
        {"a link in its place",
         [](auto& dir) {
             std::filesystem::rename(dir.path("letter"), dir.path("elsewhere"));
             std::filesystem::create_symlink("elsewhere", dir.path("letter"));
         },
         CopyState::gone, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Extracted e;
        c.happens(e.dir);
        EXPECT_EQ(e.copies.state_of(0), c.state);
        const bool was_there = e.dir.has("letter");
        EXPECT_EQ(e.copies.remove_untouched(0), c.is_removed);
        EXPECT_EQ(e.dir.has("letter"), was_there && c.state != CopyState::untouched);
    }
}

TEST(WorkCopies, ADamagedMembersFileIsKnownByItsOwnBytes) {
    Extracted e(ArchiveBuilder().add("letter", "12345", {.crc = 1}).finish());
    ASSERT_EQ(e.copies.of(0)->result.verdict, Verdict::damaged);
    e.dir.write("letter", "12345");
    EXPECT_EQ(e.copies.state_of(0), CopyState::untouched);
    e.dir.write("letter", "54321");
    EXPECT_EQ(e.copies.state_of(0), CopyState::changed);
}

TEST(WorkCopies, OfAnotherArchiveNoneIsKept) {
    Extracted e;
    const std::string other = ArchiveBuilder().add("first", "1").add("letter", "12345").finish();
    e.copies.keep_those_of(*Archive::parse(other));
    EXPECT_EQ(e.copies.of(0), nullptr);
    EXPECT_EQ(e.copies.state_of(0), CopyState::none);
    EXPECT_TRUE(e.copies.path_of(0).empty());
}

TEST(WorkCopies, KeepTheirFilesWhenMembersGo) {
    TemporaryDirectory dir;
    WorkCopies copies;
    copies.begin(dir.path());
    for (std::size_t i = 0; i < 6; ++i) {
        const std::string name = std::to_string(i);
        dir.write(name, "x");
        copies.record_copy(i, name, name, true);
    }
    copies.erase({0, 3, 4});
    ASSERT_EQ(copies.count(), 3U);
    const char* left[] = {"1", "2", "5"};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(copies.path_of(i), dir.path(left[i]));
        EXPECT_EQ(copies.of(i)->result.member, i);
    }
}

}  // namespace
}  // namespace quill::zip
