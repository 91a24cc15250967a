#include "archive/extracting/extraction.h"

#include "archive/archive_builder.h"
#include "archive/container/member_time.h"
#include "support/temporary_directory.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <numeric>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace quill::zip {
namespace {

namespace fs = std::filesystem;
using tests::ArchiveBuilder;
using tests::TemporaryDirectory;

std::vector<MemberResult> extract_all(const std::string& bytes, const std::string& directory, unsigned threads = 2) {
    const Result<Archive> archive = Archive::parse(bytes);
    EXPECT_TRUE(archive.ok());
    std::vector<std::size_t> all(archive->members().size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    ExtractOptions options;
    options.threads = threads;
    std::vector<MemberResult> results;
    EXPECT_TRUE(
        extract_members(*archive, all, MemberPaths(archive->members()), directory, options, [&](MemberResult result) {
            results.push_back(std::move(result));
        }).ok());
    for (std::size_t i = 0; i < results.size(); ++i) EXPECT_EQ(results[i].member, i);
    EXPECT_EQ(results.size(), all.size());
    return results;
}

std::string kinds(const MemberResult& result) {
    std::string out;
    for (const Problem& problem : result.problems) out += (out.empty() ? "" : " ") + std::string(word_of(problem));
    return out;
}

constexpr std::uint16_t unix_made = 3U << 8U;

TEST(SafePath, NeverLeavesTheDirectory) {
    const struct {
        std::string_view name, path;
    } cases[] = {
        {"a/b.txt", "a/b.txt"},
        {"../../etc/passwd", "etc/passwd"},
        {"a/../../b", "a/b"},
        {"/etc/passwd", "etc/passwd"},
        {"\\\\server\\share\\x", "server/share/x"},
        {"C:\\Windows\\x.dll", "Windows/x.dll"},
        {"C:x", "x"},
        {"./a//b/.", "a/b"},
        {".bashrc", ".bashrc"},
        {"...", ""},
        {"..", ""},
        {"a/.../b", "a/b"},
        {"-rf", "rf"},
        {"a\nb", "ab"},
        {std::string_view("te\0t", 4), "tet"},
        {"con.txt", "_con.txt"},
        {"invoice\xE2\x80\xAE"
         "fdp.exe",
         "invoicefdp.exe"},
    };
    for (const auto& c : cases) EXPECT_EQ(safe_path(c.name), c.path) << c.name;
}

TEST(MemberPaths, KeepEveryMemberApart) {
    const std::string bytes = ArchiveBuilder()
                                  .add("a.txt", "1")
                                  .add("A.TXT", "2")
                                  .add("a.txt", "3")
                                  .add("../a.txt", "4")
                                  .add("x", "file")
                                  .add("x/y", "below it")
                                  .add("x/z", "too")
                                  .add("d/", "")
                                  .add("d", "5")
                                  .add("", "6")
                                  .finish();
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    std::vector<std::string> paths;
    const MemberPaths found(archive->members());
    for (std::size_t i = 0; i < found.size(); ++i) paths.push_back(found[i].path);
    EXPECT_THAT(paths, ::testing::ElementsAre("a.txt", "A (2).TXT", "a (3).txt", "a (4).txt", "x", "x (2)/y", "x (2)/z",
                                              "d", "d (2)", "unnamed"));
}

TEST(Extraction, WritesEveryMemberWhereItBelongsWhateverTheThreads) {
    for (const unsigned threads : {1U, 2U, 5U}) {
        const TemporaryDirectory dir;
        ArchiveBuilder builder;
        for (int i = 0; i < 300; ++i)
            builder.add("d" + std::to_string(i % 7) + "/" + std::to_string(i),
                        std::string(1000, 'x') + std::to_string(i));
        const auto results = extract_all(builder.finish(), dir.path(), threads);
        for (int i = 0; i < 300; ++i) {
            const std::string name = "d" + std::to_string(i % 7) + "/" + std::to_string(i);
            EXPECT_EQ(results[static_cast<std::size_t>(i)].path, name);
            EXPECT_EQ(dir.read(name), std::string(1000, 'x') + std::to_string(i));
        }
    }
}

TEST(Extraction, OneBadMemberStopsNoOther) {
    const TemporaryDirectory dir;
    const auto results = extract_all(ArchiveBuilder()
                                         .add("bad", "content", {.crc = 7})
                                         .add("none", "x", {.method = 77})
                                         .add("shared", "x", {.offset = 5})
                                         .add("good", "fine")
                                         .add("d/", "hidden content")
                                         .finish(),
                                     dir.path());
    EXPECT_EQ(results[0].verdict, Verdict::damaged);
    EXPECT_EQ(dir.read("bad"), "content");  // kept, and reported as damaged
    EXPECT_EQ(results[1].verdict, Verdict::refused);
    EXPECT_EQ(kinds(results[2]), "overlap");
    EXPECT_EQ(results[3].verdict, Verdict::verified);
    EXPECT_EQ(dir.read("good"), "fine");
    EXPECT_EQ(results[4].verdict, Verdict::damaged);
    EXPECT_THAT(dir.names(), ::testing::ElementsAre("bad", "d", "good"));
}

TEST(Extraction, MakesNoLinkNoProgramAndNothingSpecial) {
    const TemporaryDirectory dir;
    const auto results = extract_all(ArchiveBuilder()
                                         .add("link", "/etc", {.made_by = unix_made, .attributes = 0120777U << 16U})
                                         .add("link/passwd", "evil")
                                         .add("tool", "#!", {.made_by = unix_made, .attributes = 0104755U << 16U})
                                         .add("pipe", "p", {.made_by = unix_made, .attributes = 0010666U << 16U})
                                         .finish(),
                                     dir.path());
    EXPECT_EQ(dir.read("link"), "/etc");
    EXPECT_EQ(kinds(results[0]), "link");
    EXPECT_EQ(dir.read("link (2)/passwd"), "evil");
    for (const char* name : {"link", "tool", "pipe"}) {
        struct stat status = {};
        ASSERT_EQ(lstat(dir.path(name).c_str(), &status), 0);
        EXPECT_TRUE(S_ISREG(status.st_mode));
        EXPECT_EQ(status.st_mode & 07133U, 0U) << name;
    }
}

TEST(Extraction, FollowsNoLinkThatIsInTheDirectory) {
    const TemporaryDirectory dir;
    const std::string outside = dir.make_directory("outside"), into = dir.make_directory("into");
    fs::create_symlink(outside, into + "/sub");
    fs::create_symlink(outside + "/target", into + "/file");
    const auto results = extract_all(ArchiveBuilder().add("sub/x", "1").add("file", "2").add("y", "3").finish(), into);
    EXPECT_EQ(results[0].verdict, Verdict::refused);
    EXPECT_EQ(results[1].path, "file (2)");
    EXPECT_EQ(dir.read("into/y"), "3");
    EXPECT_TRUE(fs::is_empty(outside));
}

TEST(Extraction, FollowsNoLinkThatADirectoryIsExchangedForMeanwhile) {
    const TemporaryDirectory dir;
    const std::string outside = dir.make_directory("outside"), into = dir.make_directory("into");
    fs::create_directory(into + "/d");
    fs::create_symlink(outside, dir.path("link"));
    ArchiveBuilder builder;
    for (int i = 0; i < 2000; ++i) builder.add((i % 2 == 0 ? "d/" : "") + std::to_string(i), "x");
    const std::string bytes = builder.finish();
    std::atomic<bool> over = false;
    std::thread exchanging([&] {
        while (!over) {
            renameat2(AT_FDCWD, (into + "/d").c_str(), AT_FDCWD, dir.path("link").c_str(), RENAME_EXCHANGE);
        }
    });
    const auto results = extract_all(bytes, into);
    over = true;
    exchanging.join();
    EXPECT_TRUE(fs::is_empty(outside));
    EXPECT_TRUE(std::any_of(results.begin(), results.end(), [](const MemberResult& result) {
        return result.verdict == Verdict::verified && result.path.starts_with("d/");
    }));
}

TEST(Extraction, ATakenNameGetsANumberAndNothingIsReplaced) {
    const TemporaryDirectory dir;
    dir.write("a.txt", "mine");
    const auto results = extract_all(ArchiveBuilder().add("a.txt", "theirs").finish(), dir.path());
    EXPECT_EQ(results[0].path, "a (2).txt");
    EXPECT_EQ(dir.read("a.txt"), "mine");
    EXPECT_EQ(dir.read("a (2).txt"), "theirs");
}

TEST(Extraction, KeepsTimes) {
    const TemporaryDirectory dir;
    std::string stamp;
    put16(stamp, extra_timestamp);
    put16(stamp, 5);
    stamp += '\1';
    put32(stamp, 1'000'000'000);
    extract_all(
        ArchiveBuilder().add("d/", "", {.extra = stamp}).add("d/exact", "x", {.extra = stamp}).add("dos", "x").finish(),
        dir.path());
    struct stat status = {};
    ASSERT_EQ(stat(dir.path("d/exact").c_str(), &status), 0);
    EXPECT_EQ(status.st_mtime, 1'000'000'000);
    ASSERT_EQ(stat(dir.path("d").c_str(), &status), 0);
    EXPECT_EQ(status.st_mtime, 1'000'000'000);
    ASSERT_EQ(stat(dir.path("dos").c_str(), &status), 0);
    EXPECT_EQ(to_dos_time(status.st_mtime), ArchiveBuilder::time);
}

TEST(Extraction, CanBeStopped) {
    const TemporaryDirectory dir;
    const std::string bytes = ArchiveBuilder().add("a", "1").add("b", "2").finish();
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    ExtractOptions options;
    std::size_t calls = 0;
    options.progress = [&](const Progress& progress) {
        ++calls;
        EXPECT_LE(progress.members_done, progress.members);
        return false;
    };
    const auto check = [](const MemberResult& result) {
        EXPECT_TRUE(result.verdict == Verdict::verified || kinds(result) == "cancelled");
    };
    ASSERT_TRUE(extract_members(*archive, {0, 1}, MemberPaths(archive->members()), dir.path(), options, check).ok());
    EXPECT_GT(calls, 0U);
}

TEST(Extraction, AStopInALargeMemberLeavesNothingOfIt) {
    const TemporaryDirectory dir;
    const std::string bytes = ArchiveBuilder().add("large", std::string(300'000'000, 'x')).finish();
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    ExtractOptions options;
    options.progress = [&](const Progress& progress) { return progress.bytes_done == 0; };
    std::string problems;
    ASSERT_TRUE(extract_members(*archive, {0}, MemberPaths(archive->members()), dir.path(), options,
                                [&](const MemberResult& result) { problems = kinds(result); })
                    .ok());
    EXPECT_EQ(problems, "cancelled");
    EXPECT_THAT(dir.names(), ::testing::IsEmpty());
}

TEST(Extraction, ABombIsAskedAboutBeforeAnythingIsWritten) {
    const TemporaryDirectory dir;
    const std::string bytes = ArchiveBuilder().add("a", std::string(600, 'a')).add("b", std::string(600, 'b')).finish();
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    ExtractOptions options;
    options.limits = {.most_ratio = 0, .free_bytes = 1000};
    std::size_t count = 0;
    const auto run = [&](const std::vector<std::size_t>& wanted) {
        return extract_members(*archive, wanted, MemberPaths(archive->members()), dir.path(), options,
                               [&](const MemberResult&) { ++count; });
    };
    EXPECT_EQ(run({0, 1}).error().code, ErrorCode::limit);
    EXPECT_THAT(dir.names(), ::testing::IsEmpty());
    EXPECT_EQ(count, 0U);
    Expansion asked;
    bool answer = false;
    options.confirm_large = [&](const Expansion& expansion) {
        asked = expansion;
        return answer;
    };
    EXPECT_FALSE(run({0, 1}).ok());
    EXPECT_EQ(asked.bytes, 1200U);
    EXPECT_EQ(asked.archive_size, bytes.size());
    answer = true;
    EXPECT_TRUE(run({0, 1}).ok());
    EXPECT_THAT(dir.names(), ::testing::ElementsAre("a", "b"));
    asked = {};
    EXPECT_TRUE(run({0}).ok());  // one alone is not a bomb
    EXPECT_EQ(asked.bytes, 0U);
}

TEST(Limits, AreAHundredMegabytesAndTwoHundredTimesTheArchive) {
    EXPECT_EQ(Limits().bytes_for(300), 100'000'000U);
    EXPECT_EQ(Limits().bytes_for(1'000'000), 200'000'000U);
    EXPECT_EQ(Limits().bytes_for(std::uint64_t{1} << 40U), std::uint64_t{100} << 30U);
}

TEST(MemberPaths, AFileInTheWayOfADirectoryIsPassedOnce) {
    ArchiveBuilder builder;
    builder.add("a", "").add("a (2)/", "").add("a/x", "").add("a (3)", "").add("A/y", "").add("a", "").add("a/z", "");
    const std::string bytes = builder.finish();
    const Result<Archive> archive = Archive::parse(bytes);
    ASSERT_TRUE(archive.ok());
    const MemberPaths paths(archive->members());
    std::vector<std::string> found;
    for (std::size_t i = 0; i < paths.size(); ++i) found.push_back(paths[i].path);
    EXPECT_THAT(found, ::testing::ElementsAre("a", "a (2)", "a (2)/x", "a (3)", "a (2)/y", "a (4)", "a (2)/z"));
}

TEST(MemberPaths, DeepNamesKeepTheirLastPart) {
    std::string deep;
    for (int i = 0; i < 500; ++i) deep += "d" + std::to_string(i) + "/";
    const std::string path = safe_path(deep + "file.txt");
    EXPECT_EQ(std::count(path.begin(), path.end(), '/'), 100);
    EXPECT_EQ(path.substr(path.rfind('/')), "/file.txt");
    std::string long_name;
    for (int i = 0; i < 40; ++i) long_name += std::string(200, 'x') + "/";
    EXPECT_LT(safe_path(long_name + "file.txt").size(), 4096U);
}

TEST(Extraction, ADirectoryIsVerifiedOnlyWhereItsMemberHasNothing) {
    const struct {
        const char* what;
        tests::Odd odd;
        const char* outcome;
    } cases[] = {
        {"nothing", {.packed = ""}, "verified "},
        {"deflated nothing", {.method = zip::method_deflated, .packed = std::string("\x03\0", 2)}, "verified "},
        {"hidden bytes", {.packed = "hidden"}, "damaged wrong-size"},
        {"the name of a file inside", {.packed = "", .local_name = "evil.sh"}, "verified names-differ"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const TemporaryDirectory dir;
        const std::vector<MemberResult> results =
            extract_all(ArchiveBuilder().add("d/", "", c.odd).finish(), dir.path());
        ASSERT_EQ(results.size(), 1U);
        EXPECT_EQ(std::string(name_of(results[0].verdict)) + " " + kinds(results[0]), c.outcome);
        EXPECT_TRUE(dir.has("d"));
    }
}

}  // namespace
}  // namespace quill::zip
