#include "files/atomic_file.h"

#include "support/full_disk.h"
#include "support/temporary_directory.h"
#include "support/without_unnamed_files.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace quill::files {
namespace {

using Names = std::vector<std::string>;

class Atomic : public testing::Test {
  protected:
    /// Writes `bytes` as `name` and publishes it.
    Result<std::string> publish(const std::string& name, const std::string& bytes, OnCollision on_collision,
                                Access access = Access::usual) {
        Result<AtomicFile> file = AtomicFile::create(dir.path(name), access);
        if (!file) return file.error();
        file->write(bytes);
        return file->publish(on_collision);
    }

    mode_t mode_of(const std::string& name) {
        struct stat status = {};
        lstat(dir.path(name).c_str(), &status);
        return status.st_mode & 07777U;
    }

    mode_t type_of(const std::string& name) {
        struct stat status = {};
        lstat(dir.path(name).c_str(), &status);
        return status.st_mode;
    }

    tests::TemporaryDirectory dir;
};

TEST_F(Atomic, AppearsUnderItsNameOnlyWhenPublished) {
    Result<AtomicFile> file = AtomicFile::create(dir.path("a"));
    ASSERT_TRUE(file.ok());
    EXPECT_TRUE(file->write("one "));
    EXPECT_TRUE(file->write("two"));
    EXPECT_FALSE(dir.has("a"));
    ASSERT_TRUE(file->publish(OnCollision::fail).ok());
    EXPECT_EQ(dir.read("a"), "one two");
    EXPECT_EQ(dir.names(), Names{"a"});
}

TEST_F(Atomic, DoesNotTryNamesThatWereTakenEarlierInTheRun) {
    LastNumbers numbers;
    const auto publish_next = [&](const std::string& name) {
        return *AtomicFile::create(dir.path(name))->publish(OnCollision::choose_name, Durability::cached, &numbers);
    };
    dir.write("a (30)", "");
    for (int n = 1; n < 30; ++n) publish_next("a");
    for (const std::string name : {"a", "a (2)", "a (29)"}) unlink(dir.path(name).c_str());
    EXPECT_EQ(publish_next("a"), dir.path("a (31)"));
    EXPECT_EQ(publish_next("a"), dir.path("a (32)"));
    EXPECT_EQ(publish_next("b"), dir.path("b"));
}

TEST_F(Atomic, AKilledProcessLeavesNothing) {
    const pid_t child = fork();
    if (child == 0) {
        Result<AtomicFile> file = AtomicFile::create(dir.path("a"));
        file->write("half");
        kill(getpid(), SIGKILL);
    }
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(dir.names().empty());
}

/// Runs `work` in a process that cannot make unnamed files.
template <class Work>
void where_files_need_names(const Work& work) {
    const pid_t child = fork();
    if (child == 0) {
        if (!tests::refuse_unnamed_files()) _exit(2);
        work();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(Atomic, WithoutFilesThatHaveNoNameAWorkFileIsRenamedOrRemoved) {
    where_files_need_names([&] {
        const std::string work_name = unfinished_name(0);
        dir.write("secret", "old");
        chmod(dir.path("secret").c_str(), 0600);
        {
            Result<AtomicFile> file = AtomicFile::create(dir.path("secret"), Access::of_old);
            file->write("half");
            EXPECT_EQ(dir.names(), (Names{work_name, "secret"}));
            EXPECT_EQ(mode_of(work_name), 0600U);
        }
        EXPECT_EQ(dir.names(), Names{"secret"});
        EXPECT_EQ(*publish("secret", "new", OnCollision::choose_name), dir.path("secret (2)"));
        EXPECT_TRUE(publish("secret", "new", OnCollision::replace).ok());
        EXPECT_EQ(publish("secret", "newer", OnCollision::fail).error().code, ErrorCode::exists);
        EXPECT_EQ(dir.names(), (Names{"secret", "secret (2)"}));
        EXPECT_EQ(dir.read("secret"), "new");

        const AtomicFile kept = *AtomicFile::create(dir.path("b"));
        EXPECT_TRUE(dir.has(work_name));
        remove_unfinished();  // like a signal handler
        EXPECT_FALSE(dir.has(work_name));
    });
}

TEST_F(Atomic, OutputGoesIntoAPipeAndNeverInItsPlace) {
    ASSERT_EQ(mkfifo(dir.path("pipe").c_str(), 0600), 0);
    ASSERT_EQ(symlink("pipe", dir.path("link").c_str()), 0);
    const int reader = open(dir.path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    for (const char* name : {"pipe", "link"}) {
        Result<AtomicFile> file = AtomicFile::create_output(dir.path(name));
        ASSERT_TRUE(file.ok());
        EXPECT_TRUE(file->write("some ") && file->write("bytes"));
        EXPECT_EQ(*file->publish(OnCollision::replace), dir.path(name));
        std::array<char, 16> read_back{};
        EXPECT_EQ(read(reader, read_back.data(), read_back.size()), 10);
        EXPECT_STREQ(read_back.data(), "some bytes");
        EXPECT_FALSE(AtomicFile::create_output(dir.path(name))->write_at(3, "x")) << "a pipe has no places";
    }
    close(reader);
    EXPECT_EQ(dir.names(), (Names{"link", "pipe"}));
    EXPECT_EQ(mode_of("pipe"), 0600U);
}

TEST_F(Atomic, OutputFollowsALinkToTheFileItLeadsTo) {
    dir.write("d/kept", "old");
    chmod(dir.path("d/kept").c_str(), 0600);
    ASSERT_EQ(symlink("d/kept", dir.path("link").c_str()), 0);
    Result<AtomicFile> file = AtomicFile::create_output(dir.path("link"));
    file->write("new");
    EXPECT_EQ(file->publish(OnCollision::fail).error().code, ErrorCode::exists);
    file = AtomicFile::create_output(dir.path("link"));
    file->write("new");
    EXPECT_TRUE(file->publish(OnCollision::replace).ok());
    EXPECT_EQ(dir.read("d/kept"), "new");
    EXPECT_EQ(mode_of("d/kept"), 0600U);
    EXPECT_TRUE(S_ISLNK(type_of("link")));

    ASSERT_EQ(symlink("nowhere", dir.path("dangling").c_str()), 0);
    EXPECT_EQ(AtomicFile::create_output(dir.path("dangling")).error().code, ErrorCode::exists);
    EXPECT_EQ(AtomicFile::create_output(dir.path("d")).error().code, ErrorCode::access);
}

TEST_F(Atomic, LeavesNothingWhenItIsDropped) {
    {
        Result<AtomicFile> file = AtomicFile::create(dir.path("a"));
        file->write("half");
        AtomicFile moved = *std::move(file);
        moved.write("more");
    }
    EXPECT_TRUE(dir.names().empty());
}

TEST_F(Atomic, WritesOutOfOrderLeaveZerosInTheGaps) {
    Result<AtomicFile> file = AtomicFile::create(dir.path("a"));
    file->write_at(4, "cd");
    file->write_at(0, "ab");
    EXPECT_EQ(file->size(), 6U);
    file->write("ef");
    ASSERT_TRUE(file->publish(OnCollision::fail).ok());
    EXPECT_EQ(dir.read("a"), std::string("ab\0\0cdef", 8));
}

/// Publishes files in an open directory that is renamed meanwhile.
void write_in_renamed_directory(const tests::TemporaryDirectory& dir, const std::string& from, const std::string& to) {
    dir.make_directory(from);
    const Descriptor open_directory(open(dir.path(from).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (const auto* const wanted : {"a.txt", "a (2).txt"}) {
        Result<AtomicFile> file = AtomicFile::create_in(open_directory.get(), "a.txt");
        ASSERT_TRUE(file.ok()) << file.error().text;
        file->write("bytes");
        file->set_time(1'000'000'000);
        if (std::filesystem::exists(dir.path(from))) std::filesystem::rename(dir.path(from), dir.path(to));
        EXPECT_EQ(*file->publish(OnCollision::choose_name), wanted);
        EXPECT_EQ(dir.read(to + "/" + wanted), "bytes");
        struct stat status = {};
        ASSERT_EQ(stat(dir.path(to + "/" + wanted).c_str(), &status), 0);
        EXPECT_EQ(status.st_mtime, 1'000'000'000);
    }
    EXPECT_FALSE(dir.has(to + "/" + unfinished_name(0)));
}

TEST_F(Atomic, FilesInAnOpenDirectoryGoWhereverItIsMoved) {
    write_in_renamed_directory(dir, "one", "two");
    where_files_need_names([&] { write_in_renamed_directory(dir, "three", "four"); });
}

TEST_F(Atomic, ATakenNameIsRefusedEvadedOrReplacedAsAsked) {
    dir.write("a.txt", "old");
    const Result<std::string> refused = publish("a.txt", "new", OnCollision::fail);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, ErrorCode::exists);
    EXPECT_EQ(dir.read("a.txt"), "old");

    EXPECT_EQ(*publish("a.txt", "second", OnCollision::choose_name), dir.path("a (2).txt"));
    EXPECT_EQ(*publish("a.txt", "third", OnCollision::choose_name), dir.path("a (3).txt"));
    EXPECT_EQ(dir.read("a.txt"), "old");

    EXPECT_EQ(*publish("a.txt", "new", OnCollision::replace), dir.path("a.txt"));
    EXPECT_EQ(dir.read("a.txt"), "new");
    EXPECT_EQ(dir.names(), (Names{"a (2).txt", "a (3).txt", "a.txt"}));
}

TEST_F(Atomic, ManyThatWantOneNameAreNumberedWithoutAGap) {
    EXPECT_EQ(*publish("a.txt", "1", OnCollision::choose_name), dir.path("a.txt"));
    for (unsigned n = 2; n <= 70; ++n) {
        const std::string number = std::to_string(n);
        EXPECT_EQ(*publish("a.txt", number, OnCollision::choose_name), dir.path("a (" + number + ").txt"));
    }
    EXPECT_EQ(dir.read("a (33).txt"), "33");
}

TEST_F(Atomic, NamesThatWereTakenWithSkillDoNotKeepANameFromBeingFound) {
    for (unsigned n = 2; n <= 8; ++n) dir.write("a (" + std::to_string(n) + ")", "kept");
    for (unsigned n = 16; n <= 1U << 20; n *= 2) dir.write("a (" + std::to_string(n) + ")", "kept");
    dir.write("a", "kept");
    const std::size_t before = dir.names().size();
    for (std::size_t n = 1; n <= 3; ++n) {
        EXPECT_TRUE(publish("a", "new", OnCollision::choose_name).ok());
        EXPECT_EQ(dir.names().size(), before + n);
    }
    EXPECT_EQ(dir.read("a (65536)"), "kept");
}

TEST_F(Atomic, ALinkAtTheTargetIsNeverWrittenThrough) {
    dir.write("kept", "kept");
    const auto link_to_kept = [&] { ASSERT_EQ(symlink("kept", dir.path("link").c_str()), 0); };
    link_to_kept();
    EXPECT_FALSE(publish("link", "new", OnCollision::fail).ok());
    EXPECT_EQ(*publish("link", "new", OnCollision::choose_name), dir.path("link (2)"));
    EXPECT_EQ(*publish("link", "new", OnCollision::replace), dir.path("link"));
    EXPECT_EQ(dir.read("link"), "new");
    EXPECT_EQ(dir.read("kept"), "kept");

    ASSERT_EQ(symlink("nowhere", dir.path("dangling").c_str()), 0);
    EXPECT_FALSE(publish("dangling", "new", OnCollision::fail).ok());
    EXPECT_FALSE(dir.has("nowhere"));
}

TEST_F(Atomic, IsNeverExecutable) {
    const mode_t before = umask(0);
    EXPECT_TRUE(publish("a", "x", OnCollision::fail).ok());
    umask(before);
    EXPECT_EQ(mode_of("a"), 0644U);
}

TEST_F(Atomic, ARewriteIsNeverReadableByMoreThanTheFileItReplaces) {
    const mode_t before = umask(0);
    for (const mode_t mode : {0600U, 0640U, 0666U, 0400U, 0755U}) {
        dir.write("a", "old");
        chmod(dir.path("a").c_str(), mode);
        {
            const AtomicFile file = *AtomicFile::create(dir.path("a"), Access::of_old);
            EXPECT_EQ(file.permissions(), mode) << "before its first byte";
        }
        ASSERT_TRUE(publish("a", "new", OnCollision::replace, Access::of_old).ok());
        EXPECT_EQ(mode_of("a"), mode);
        unlink(dir.path("a").c_str());
    }
    EXPECT_EQ(AtomicFile::create(dir.path("new"), Access::of_old)->permissions(), 0644U);
    EXPECT_EQ(AtomicFile::create(dir.path("new"), Access::of_owner)->permissions(), 0600U);
    umask(before);
}

TEST_F(Atomic, ARewriteKeepsThePermissionBits) {
    dir.write("a", "old");
    chmod(dir.path("a").c_str(), 0600);
    ASSERT_TRUE(rewrite_file(dir.path("a"), "new").ok());
    EXPECT_EQ(dir.read("a"), "new");
    EXPECT_EQ(mode_of("a"), 0600U);
}

TEST_F(Atomic, ADirectoryThatTakesNoFileIsToldAtOnce) {
    EXPECT_EQ(AtomicFile::create(dir.path("none/a")).error().code, ErrorCode::not_found);
    dir.write("file", "");
    EXPECT_EQ(AtomicFile::create(dir.path("file/a")).error().code, ErrorCode::access);
    const Result<AtomicFile> in_proc = AtomicFile::create("/proc/a");
    EXPECT_FALSE(in_proc.ok());
}

TEST_F(Atomic, ADirectoryAtTheTargetStaysAsItIs) {
    dir.write("d/inside", "x");
    EXPECT_FALSE(publish("d", "new", OnCollision::replace).ok());
    EXPECT_EQ(dir.names(), Names{"d"});
    EXPECT_EQ(dir.read("d/inside"), "x");
}

TEST_F(Atomic, AFullDiskLeavesTheOldFileAndNothingElse) {
    dir.write("a", "old");
    {
        const tests::FullDisk full(1000);
        const Status rewritten = rewrite_file(dir.path("a"), std::string(5000, 'x'));
        ASSERT_FALSE(rewritten.ok());
        EXPECT_EQ(rewritten.error().code, ErrorCode::no_space);

        Result<AtomicFile> file = AtomicFile::create(dir.path("b"));
        ASSERT_TRUE(file.ok());
        EXPECT_TRUE(file->write(std::string(900, 'x')));
        EXPECT_FALSE(file->write(std::string(900, 'x')));
        EXPECT_TRUE(file->failed());
        EXPECT_FALSE(file->write("x")) << "the first failure stays";
        EXPECT_EQ(file->publish(OnCollision::fail).error().code, ErrorCode::no_space);
    }
    EXPECT_EQ(dir.read("a"), "old");
    EXPECT_EQ(dir.names(), Names{"a"});
}

}  // namespace
}  // namespace quill::files
