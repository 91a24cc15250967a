#include "archive/changing/archive_change.h"

#include "archive/archive_builder.h"
#include "archive/changing/tree_walk.h"
#include "archive/container/member_reader.h"
#include "support/temporary_directory.h"

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quill::zip {
namespace {

using ::testing::ElementsAre;
using tests::ArchiveBuilder;
using tests::TemporaryDirectory;

/// Returns name and content of every member, and checks that each is verified.
std::vector<std::pair<std::string, std::string>> contents(const std::string& path, const std::string& password = {}) {
    std::vector<std::pair<std::string, std::string>> out;
    const Result<Archive> archive = Archive::open(path);
    EXPECT_TRUE(archive.ok());
    if (!archive) return out;
    EXPECT_TRUE(archive->problems().empty());
    MemberReader reader(*archive, password);
    for (const Member& member : archive->members()) {
        out.emplace_back(member.name, "");
        const Content read = reader.read(member, [&](std::string_view bytes) {
            out.back().second += bytes;
            return true;
        });
        EXPECT_EQ(read.verdict, Verdict::verified) << member.name;
    }
    return out;
}

std::pair<std::string, std::string> member(std::string name, std::string content) {
    return {std::move(name), std::move(content)};
}

/// An output that fails, or kills the process, at its n-th operation.
class FaultyOutput final : public ArchiveOutput {
  public:
    FaultyOutput(std::unique_ptr<ArchiveOutput> output, int& operations_left, bool kills)
        : output_(std::move(output)), left_(operations_left), kills_(kills) {}

    Status write(std::string_view bytes) override {
        if (!works()) return Error{ErrorCode::no_space, 0, "no space"};
        return output_->write(bytes);
    }
    Result<files::MappedFile> read_back() override {
        if (!works()) return Error{ErrorCode::io, 0, "no reading"};
        return output_->read_back();
    }
    Status publish(bool is_new) override {
        if (!works()) return Error{ErrorCode::access, 0, "no renaming"};
        return output_->publish(is_new);
    }

  private:
    bool works() {
        if (left_-- > 0) return true;
        if (kills_) raise(SIGKILL);
        return false;
    }

    std::unique_ptr<ArchiveOutput> output_;
    int& left_;
    bool kills_;
};

MakeOutput faulty(int& operations_left, bool kills) {
    return [&operations_left, kills](const std::string& path) -> Result<std::unique_ptr<ArchiveOutput>> {
        if (operations_left-- <= 0) {
            if (kills) raise(SIGKILL);
            return Error{ErrorCode::access, 0, "no new file"};
        }
        auto output = output_beside(path);
        if (!output) return output.error();
        return std::unique_ptr<ArchiveOutput>(
            std::make_unique<FaultyOutput>(std::move(*output), operations_left, kills));
    };
}

/// Replaces b, removes c and adds n.
Status change_all(const TemporaryDirectory& dir, const MakeOutput& make_output) {
    Result<ArchiveChange> change = ArchiveChange::begin(dir.path("a.zip"), make_output);
    if (!change) return change.error();
    for (const char* name : {"b", "n"}) {
        if (Status added = change->add_file(dir.path(name), name, {}); !added) return added;
    }
    if (Status removed = change->remove({2}); !removed) return removed;
    return change->finish();
}

std::string old_archive() {
    return ArchiveBuilder()
        .add("a", "alpha")
        .add("b", "beta")
        .add("c", "gamma")
        .add("d", "delta", {.silent_local = true})
        .finish("remark");
}

void prepare(const TemporaryDirectory& dir) {
    dir.write("a.zip", old_archive());
    dir.write("b", "new beta");
    dir.write("n", std::string(5000, 'n'));
}

TEST(ArchiveChange, KeepsOrderCommentAndTheBytesOfTheOthers) {
    const TemporaryDirectory dir;
    prepare(dir);
    ASSERT_TRUE(change_all(dir, output_beside).ok());
    EXPECT_THAT(contents(dir.path("a.zip")), ElementsAre(member("a", "alpha"), member("b", "new beta"),
                                                         member("d", "delta"), member("n", std::string(5000, 'n'))));
    const std::string before = old_archive(), after = dir.read("a.zip");
    EXPECT_EQ(after.substr(0, 36), before.substr(0, 36));  // the first member: header of 30, name of 1, data of 5
    const std::size_t d = before.find("PK\3\4", before.find("gamma"));
    EXPECT_NE(after.find(before.substr(d, 30 + 1 + 5 + 16)), std::string::npos);  // the last one, with its descriptor
    EXPECT_EQ(after.substr(after.size() - 6), "remark");
    EXPECT_THAT(dir.names(), ElementsAre("a.zip", "b", "n"));
}

TEST(ArchiveChange, AFailureAtAnyStepLeavesTheOldArchive) {
    const std::string old = old_archive();
    int steps = 0;
    for (bool failed = true; failed; ++steps) {
        ASSERT_LT(steps, 100);
        const TemporaryDirectory dir;
        prepare(dir);
        int left = steps;
        failed = !change_all(dir, faulty(left, false)).ok();
        EXPECT_EQ(dir.read("a.zip") == old, failed) << "step " << steps;
        EXPECT_THAT(dir.names(), ElementsAre("a.zip", "b", "n"));
    }
    EXPECT_GT(steps, 7);  // creating, the kept pieces, two members, the directory, the check, the renaming
}

TEST(ArchiveChange, AKillAtAnyStepLeavesTheOldArchiveOrTheNewOne) {
    const std::string old = old_archive();
    for (int steps = 0; steps < 100; ++steps) {
        const TemporaryDirectory dir;
        prepare(dir);
        const pid_t child = fork();
        if (child == 0) {
            int left = steps;
            _exit(change_all(dir, faulty(left, true)).ok() ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        if (WIFEXITED(status)) {
            EXPECT_EQ(WEXITSTATUS(status), 0);
            EXPECT_EQ(contents(dir.path("a.zip")).size(), 4U);
            return;
        }
        EXPECT_EQ(dir.read("a.zip"), old) << "step " << steps;
    }
    FAIL() << "it never came to its end";
}

TEST(ArchiveChange, AFullDiskLeavesTheOldArchive) {
    const std::string old = old_archive();
    std::string noise(34'000'000, '\0');  // more than is buffered in memory
    std::uint32_t state = 1;
    for (char& c : noise) c = static_cast<char>((state = state * 1664525 + 1013904223) >> 24U);
    // In the first and the last the new archive gets too long, in the other its staging file.
    for (const rlim_t most : {rlim_t{50}, rlim_t{1'000'000}, rlim_t{noise.size() + 100}}) {
        const TemporaryDirectory dir;
        prepare(dir);
        if (most >= 1'000'000) dir.write("n", noise);
        const pid_t child = fork();
        if (child == 0) {
            files::let_oversized_writes_fail();
            const rlimit limit{most, most};
            _exit(setrlimit(RLIMIT_FSIZE, &limit) == 0 && !change_all(dir, output_beside).ok() ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << most << " bytes";
        EXPECT_EQ(dir.read("a.zip"), old);
        EXPECT_THAT(dir.names(), ElementsAre("a.zip", "b", "n"));
    }
}

TEST(ArchiveChange, JunkBeforeAndBehindStays) {
    const TemporaryDirectory dir;
    prepare(dir);
    dir.write("a.zip", "#!stub\n" + old_archive() + "signature");
    ASSERT_TRUE(change_all(dir, output_beside).ok());
    const std::string after = dir.read("a.zip");
    EXPECT_EQ(after.substr(0, 7), "#!stub\n");
    EXPECT_EQ(after.substr(after.size() - 9), "signature");
    const Result<Archive> archive = Archive::parse(after);
    ASSERT_TRUE(archive.ok());
    EXPECT_EQ(archive->directory()->shift, 7);
    EXPECT_EQ(archive->members().size(), 4U);
}

TEST(ArchiveChange, RefusesWhatItCouldOnlyGuess) {
    const TemporaryDirectory dir;
    dir.write("n", "new");
    const struct {
        const char* what;
        std::string bytes;
        ErrorCode code;
    } cases[] = {
        {"no archive", "a text, and nothing more than a text", ErrorCode::bad_input},
        {"no directory", ArchiveBuilder().add("a", "x").members(), ErrorCode::unsupported},
        {"members not where the directory says, which lies behind junk",
         ArchiveBuilder().add("a", "x").members() + std::string(40, '-') +
             ArchiveBuilder().add("a", "x").finish().substr(32),
         ErrorCode::unsupported},
        {"shared bytes", ArchiveBuilder().add("a", "x").add("b", "y", {.offset = 2}).finish(), ErrorCode::unsupported},
    };
    for (const auto& c : cases) {
        dir.write("a.zip", c.bytes);
        const Result<ArchiveChange> change = ArchiveChange::begin(dir.path("a.zip"));
        ASSERT_FALSE(change.ok()) << c.what;
        EXPECT_EQ(change.error().code, c.code) << c.what;
        EXPECT_EQ(dir.read("a.zip"), c.bytes);
    }
    dir.write("a.zip", old_archive());
    Result<ArchiveChange> change = ArchiveChange::begin(dir.path("a.zip"));
    ASSERT_TRUE(change.ok());
    EXPECT_FALSE(change->add_file(dir.path("a.zip"), "a.zip", {}).ok());
    EXPECT_FALSE(change->add_file(dir.path("missing"), "missing", {}).ok());
    EXPECT_FALSE(change->add_file(dir.path(), "dir", {}).ok());
    EXPECT_FALSE(change->remove({0, 4}).ok());
}

TEST(ArchiveChange, OfTwoMembersOfANameTheOneMeantIsReplaced) {
    const TemporaryDirectory dir;
    dir.write("a.zip", ArchiveBuilder().add("same", "first").add("b", "x").add("same", "second").finish());
    dir.write("n", "new");
    Result<ArchiveChange> change = ArchiveChange::begin(dir.path("a.zip"));
    ASSERT_TRUE(change.ok() && change->has(0));
    Result<PackedMember> packed = change->pack(dir.path("n"), "n", {});
    ASSERT_TRUE(packed.ok());
    change->replace(0, std::move(*packed), {});
    EXPECT_FALSE(change->has(0));
    EXPECT_FALSE(change->has(3));
    ASSERT_TRUE(change->finish().ok());
    EXPECT_THAT(contents(dir.path("a.zip")),
                ElementsAre(member("same", "new"), member("b", "x"), member("same", "second")));
}

TEST(ArchiveChange, AWriteProtectedArchiveIsNotReplaced) {
    const TemporaryDirectory dir;
    dir.write("a.zip", old_archive());
    ASSERT_EQ(chmod(dir.path("a.zip").c_str(), 0444), 0);
    ASSERT_EQ(chmod(dir.path().c_str(), 0777), 0);
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0 && setuid(nobody) != 0) _exit(2);  // because write protection does not stop root
        const Result<ArchiveChange> change = ArchiveChange::begin(dir.path("a.zip"));
        _exit(!change && change.error().code == ErrorCode::access ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

TEST(ArchiveChange, AnArchiveChangedByAnotherMeanwhileIsLeftAlone) {
    const TemporaryDirectory dir;
    prepare(dir);
    Result<ArchiveChange> change = ArchiveChange::begin(dir.path("a.zip"));
    ASSERT_TRUE(change.ok() && change->add_file(dir.path("n"), "n", {}).ok());
    const std::string theirs = ArchiveBuilder().add("theirs", "x").finish();
    std::filesystem::remove(dir.path("a.zip"));
    dir.write("a.zip", theirs);
    EXPECT_FALSE(change->finish().ok());
    EXPECT_EQ(dir.read("a.zip"), theirs);
}

TEST(ArchiveChange, PasswordsAndLargeFilesComeBackAsTheyWere) {
    const TemporaryDirectory dir;
    std::string large(70'000'000, 'x');  // larger than what is compressed in one piece
    for (std::size_t i = 0; i < large.size(); i += 997) large[i] = static_cast<char>('a' + i % 23);
    dir.write("large", large);
    dir.write("small", "a small secret");
    dir.write("empty", "");
    for (const std::string password : {"", "pass word"}) {
        std::filesystem::remove(dir.path("new.zip"));
        Result<ArchiveChange> change = ArchiveChange::begin(dir.path("new.zip"));
        ASSERT_TRUE(change.ok());
        for (const char* name : {"large", "small", "empty"}) {
            ASSERT_TRUE(change->add_file(dir.path(name), name, {.password = password}).ok());
        }
        ASSERT_TRUE(change->finish().ok());
        EXPECT_TRUE(contents(dir.path("new.zip"), password) ==
                    std::vector({member("large", large), member("small", "a small secret"), member("empty", "")}));
        EXPECT_EQ(dir.read("new.zip").find("a small secret") == std::string::npos, !password.empty());
    }
    const Result<Archive> archive = Archive::open(dir.path("new.zip"));
    ASSERT_TRUE(archive.ok());
    MemberReader wrong(*archive, "another");
    const Content refused = wrong.read(archive->members()[0], [](std::string_view) { return true; });
    EXPECT_NE(refused.verdict, Verdict::verified);
}

TEST(ArchiveChange, ChangesAtOnceAreAllMade) {
    for (const bool is_new : {true, false}) {
        for (int round = 0; round < 20; ++round) {
            const TemporaryDirectory dir;
            if (!is_new) dir.write("a.zip", old_archive());
            std::vector<pid_t> children;
            for (const std::string name : {"1", "2", "3"}) {
                dir.write(name, "content " + name);
                children.push_back(fork());
                if (children.back() != 0) continue;
                _exit(change_archive(
                          dir.path("a.zip"), {},
                          [&](ArchiveChange& change) {
                              return change.add_file(dir.path(name), name, {});
                          }).ok()
                          ? 0
                          : 1);
            }
            for (const pid_t child : children) {
                int status = 0;
                ASSERT_EQ(waitpid(child, &status, 0), child);
                EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
            }
            EXPECT_EQ(contents(dir.path("a.zip")).size(), is_new ? 3U : 7U);
            EXPECT_THAT(dir.names(), ElementsAre("1", "2", "3", "a.zip"));
        }
    }
}

TEST(ArchiveChange, AStopAtAnyMomentLeavesTheOldArchive) {
    const TemporaryDirectory dir;
    const std::string old = ArchiveBuilder().add("large", std::string(5'000'000, 'x')).add("b", "x").finish();
    std::string text(17'000'000, 'y');
    for (std::size_t i = 0; i < text.size(); i += 5) text[i] = static_cast<char>('a' + i / 7 % 23);
    dir.write("a.zip", old);
    dir.write("n", text);
    bool finished = false;
    for (int stop_at = 0; !finished && stop_at < 500; stop_at = stop_at * 3 + 1) {
        int calls = 0;
        const Watch watch = [&](const Progress& progress) {
            EXPECT_LE(progress.bytes_done, progress.bytes);
            return calls++ < stop_at;
        };
        const Status changed = change_archive(dir.path("a.zip"), watch, [&](ArchiveChange& change) {
            const Status removed = change.remove({1});
            return removed ? change.add_file(dir.path("n"), "n", {}) : removed;
        });
        finished = changed.ok();
        EXPECT_TRUE(finished || changed.error().code == ErrorCode::cancelled);
        EXPECT_EQ(dir.read("a.zip") == old, !finished);
        EXPECT_THAT(dir.names(), ElementsAre("a.zip", "n"));
    }
    EXPECT_TRUE(finished);
}

TEST(ArchiveChange, WhatIsNotARegularFileIsNotReplaced) {
    const TemporaryDirectory dir;
    dir.write("n", "new");
    ASSERT_EQ(mkfifo(dir.path("fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/null", dir.path("link to a device"));
    dir.make_directory("directory");
    for (const char* name : {"fifo", "link to a device", "directory", "/dev/null"}) {
        const Result<ArchiveChange> change = ArchiveChange::begin(name[0] == '/' ? name : dir.path(name));
        ASSERT_FALSE(change.ok()) << name;
        EXPECT_EQ(change.error().code, ErrorCode::unsupported);
    }
    EXPECT_TRUE(std::filesystem::is_fifo(dir.path("fifo")));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(ArchiveChange, ARewriteKeepsModeAndAttributes) {
    const TemporaryDirectory dir;
    prepare(dir);
    ASSERT_EQ(chmod(dir.path("a.zip").c_str(), 0600), 0);
    const bool has_attributes = setxattr(dir.path("a.zip").c_str(), "user.origin", "here", 4, 0) == 0;
    ASSERT_TRUE(change_all(dir, output_beside).ok());
    struct stat status = {};
    ASSERT_EQ(stat(dir.path("a.zip").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    if (!has_attributes) return;  // the file system has no attributes
    std::string value(4, '\0');
    EXPECT_EQ(getxattr(dir.path("a.zip").c_str(), "user.origin", value.data(), value.size()), 4);
    EXPECT_EQ(value, "here");
}

TEST(ArchiveChange, LinksAreStoredAsLinks) {
    const TemporaryDirectory dir;
    dir.write("tree/file", "content");
    dir.write("secret", "outside");
    std::filesystem::create_symlink("../secret", dir.path("tree/link"));
    std::filesystem::create_directory_symlink("/etc", dir.path("tree/out"));
    std::vector<std::pair<std::string, EntryKind>> entries;
    for (const TreeEntry& entry : walk_tree("tree")) entries.emplace_back(entry.member_name, entry.kind);
    EXPECT_THAT(entries, ElementsAre(std::pair("tree", EntryKind::directory), std::pair("tree/file", EntryKind::file),
                                     std::pair("tree/link", EntryKind::link), std::pair("tree/out", EntryKind::link)));
    Result<ArchiveChange> change = ArchiveChange::begin(dir.path("a.zip"));
    ASSERT_TRUE(change.ok() && change->add_link(dir.path("tree/link"), "link", {}).ok() && change->finish().ok());
    EXPECT_THAT(contents(dir.path("a.zip")), ElementsAre(member("link", "../secret")));
    EXPECT_TRUE(Archive::open(dir.path("a.zip"))->members()[0].is_link());
}

TEST(ArchiveLayout, OffsetsArePatchedWhereTheyStand) {
    std::string extra;
    put16(extra, extra_zip64);
    put16(extra, 16);
    put64(extra, 7);  // uncompressed size
    put64(extra, 1);  // offset
    const ArchiveBuilder plain = ArchiveBuilder().add("a", "x", {.offset = 500});
    const ArchiveBuilder wide =
        ArchiveBuilder().add("a", "x", {.stated_size = 0xFFFFFFFF, .extra = extra, .offset = 0xFFFFFFFF});
    for (const std::string& header : {plain.directory(), wide.directory()}) {
        const std::string patched = with_local_offset(header, 300);
        ASSERT_EQ(patched.size(), header.size());
        EXPECT_EQ(parse_central_header(patched, 0)->local_offset, 300U);
        EXPECT_EQ(parse_central_header(patched, 0)->uncompressed_size,
                  parse_central_header(header, 0)->uncompressed_size);
    }
}

}  // namespace
}  // namespace quill::zip
