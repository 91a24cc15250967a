#include "archive/archive_builder.h"
#include "archive/container/archive.h"
#include "cli/command_fixture.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quill::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using tests::ArchiveBuilder;

class ZipCommandTest : public CommandTest {
  protected:
    std::string path(const std::string& name) const { return directory.path(name); }
};

TEST_F(ZipCommandTest, AnEmptyPasswordIsRefused) {
    directory.write("secret", "a secret");
    for (const std::string first_line : {"", "\n", "\r\n", "\nsecond line\n"}) {
        directory.write("password", first_line);
        EXPECT_EQ(call({"zip", "add", "--password-file", path("password"), path("a.zip"), path("secret")}),
                  ExitStatus::failed);
        EXPECT_THAT(directory.names(), ElementsAre("password", "secret"));
    }
    directory.write("a.zip", ArchiveBuilder().add("a", "x").finish());
    EXPECT_EQ(call({"zip", "test", "--password-file", path("password"), path("a.zip")}), ExitStatus::failed);
}

TEST_F(ZipCommandTest, AMemberWithTwoNamesIsReportedUnderBoth) {
    directory.write("a.zip", ArchiveBuilder().add("a.txt", "x", {.local_name = "evil.sh"}).finish());
    for (const char* command : {"test", "extract"}) {
        std::vector<std::string> arguments{"zip", command, path("a.zip")};
        if (arguments[1] == "extract") arguments.insert(arguments.end(), {"--into", directory.make_directory("into")});
        EXPECT_EQ(call(arguments), ExitStatus::damaged);
        EXPECT_THAT(err, HasSubstr("evil.sh"));
        EXPECT_THAT(err, HasSubstr("a.txt"));
        EXPECT_THAT(out, HasSubstr("\tverified\t"));
    }
    call({"zip", "test", "--json", path("a.zip")});
    EXPECT_THAT(out, HasSubstr("\"names-differ\""));
}

TEST_F(ZipCommandTest, JsonIsOneArrayOrAnObjectOnEachLine) {
    directory.write("a.zip", ArchiveBuilder().add("a", "x").add("d/", "").add("bad", "y", {.crc = 1}).finish());
    const std::string into = directory.make_directory("into");
    const struct {
        std::vector<std::string> arguments;
        std::string first;  // the beginning of the first object
        ExitStatus status;
    } cases[] = {
        {{"list"}, R"({"name": "a", "size": 1, "compressed_size": 1, "method": "stored", )", ExitStatus::good},
        {{"test"}, R"({"name": "a", "path": null, "size": 1, "method": "stored", )", ExitStatus::damaged},
        {{"extract", "--into", into}, R"({"name": "a", "path": ")" + into + R"(/a)", ExitStatus::damaged},
    };
    for (const auto& c : cases) {
        std::vector<std::string> arguments{"zip", c.arguments[0], path("a.zip")};
        arguments.insert(arguments.end(), c.arguments.begin() + 1, c.arguments.end());
        arguments.emplace_back("--json-lines");
        EXPECT_EQ(call(arguments), c.status);
        const std::string lines = out;
        EXPECT_EQ(lines.substr(0, c.first.size()), c.first);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 3);
        arguments.back() = "--json";
        call(arguments);
        EXPECT_EQ(out.front(), '[');
        EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 3);
        EXPECT_EQ(out.substr(out.size() - 2), "]\n");
    }
    EXPECT_EQ(call({"zip", "test", "--json", path("gone.zip")}), ExitStatus::failed);
    EXPECT_EQ(out, "[]\n");
    EXPECT_EQ(call({"zip", "list", "--json-lines", path("gone.zip")}), ExitStatus::failed);
    EXPECT_EQ(out, "");
}

TEST_F(ZipCommandTest, NamesAreReadInTheCharacterSetThatIsAskedFor) {
    const std::string cyrillic = "\xD0\x9F\xD0\xB0";
    directory.write("a.zip", ArchiveBuilder().add("\x8F\xA0", "x").add("plain", "y").finish());
    EXPECT_EQ(call({"zip", "list", "--names-in", "cp866", path("a.zip")}), ExitStatus::good) << err;
    EXPECT_THAT(out, testing::StartsWith(cyrillic + "\t1\t"));
    EXPECT_EQ(call({"zip", "test", "--names-in", "CP866", path("a.zip"), cyrillic}), ExitStatus::good) << err;
    EXPECT_EQ(call({"zip", "extract", "--names-in", "CP866", "--into", path("new"), path("a.zip")}), ExitStatus::good);
    EXPECT_EQ(directory.read("new/" + cyrillic), "x");
    EXPECT_EQ(call({"zip", "remove", "--names-in", "Windows-1252", path("a.zip"), cyrillic}), ExitStatus::failed);
    EXPECT_EQ(call({"zip", "remove", "--names-in", "CP866", path("a.zip"), cyrillic}), ExitStatus::good) << err;
    EXPECT_EQ(call({"zip", "list", path("a.zip")}), ExitStatus::good);
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 1);
    EXPECT_EQ(call({"zip", "list", "--names-in", "morse", path("a.zip")}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("Shift-JIS"));
}

TEST_F(ZipCommandTest, ABombIsRefusedUnlessLimitsAreLifted) {
    const std::string packed(110'000, '\xFF');
    directory.write("a.zip",
                    ArchiveBuilder()
                        .add("small", "x")
                        .add("bomb", "", {.method = zip::method_deflated, .packed = packed, .stated_size = 110'000'000})
                        .finish());
    const std::string into = directory.make_directory("into");
    EXPECT_EQ(call({"zip", "extract", path("a.zip"), "--into", into}), ExitStatus::damaged);
    EXPECT_THAT(err, HasSubstr("110,000,001 bytes"));
    EXPECT_THAT(err, HasSubstr("--no-limits"));
    EXPECT_FALSE(directory.has("into/small"));
    EXPECT_EQ(call({"zip", "extract", path("a.zip"), "--into", path("new")}), ExitStatus::damaged);
    EXPECT_FALSE(directory.has("new"));
    EXPECT_EQ(call({"zip", "extract", path("a.zip"), "small", "--into", path("new")}), ExitStatus::good);
    EXPECT_TRUE(directory.has("new/small"));
    EXPECT_EQ(call({"zip", "test", path("a.zip")}), ExitStatus::damaged);
    EXPECT_EQ(out, "");
    EXPECT_EQ(call({"zip", "extract", path("a.zip"), "small", "--into", into}), ExitStatus::good);
    EXPECT_EQ(call({"zip", "extract", path("a.zip"), "--into", into, "--no-limits"}), ExitStatus::damaged);
    EXPECT_TRUE(directory.has("into/small (2)"));
    EXPECT_EQ(call({"zip", "extract", "--help"}), ExitStatus::good);
    EXPECT_THAT(out, HasSubstr("100 MB and 200 times"));
}

TEST_F(ZipCommandTest, NamesAskForDirectoriesWithAndWithoutASlash) {
    directory.write("a.zip",
                    ArchiveBuilder().add("t/s/x", "1").add("t/s/", "").add("t/sx", "2").add("u", "3").finish());
    const struct {
        std::vector<std::string> names;
        ExitStatus status;
        std::string found;  // the first letters of the lines, members by number
    } cases[] = {
        {{}, ExitStatus::good, "t/s/x t/s/ t/sx u "},
        {{"t/s"}, ExitStatus::good, "t/s/x t/s/ "},
        {{"t/s/"}, ExitStatus::good, "t/s/x t/s/ "},
        {{"t", "t/s", "u", "u"}, ExitStatus::good, "t/s/x t/s/ t/sx u "},
        {{"u/"}, ExitStatus::failed, ""},
        {{"t/sx", "gone"}, ExitStatus::failed, "t/sx "},
    };
    for (const auto& c : cases) {
        std::vector<std::string> arguments{"zip", "list", path("a.zip")};
        arguments.insert(arguments.end(), c.names.begin(), c.names.end());
        EXPECT_EQ(call(arguments), c.status);
        std::string found;
        std::istringstream lines(out);
        for (std::string line; std::getline(lines, line);) found += line.substr(0, line.find('\t')) + " ";
        EXPECT_EQ(found, c.found);
    }
}

TEST_F(ZipCommandTest, AddsByTheMethodThatIsAskedFor) {
    directory.write("text", std::string(5000, 'x'));
    directory.write("large", std::string(17U << 20U, 'y'));  // more than is compressed in one piece
    directory.write("password", "sesame");
    const struct {
        std::vector<std::string> options;
        const char* method;
    } cases[] = {{{}, "\tdeflated"},
                 {{"--method", "store"}, "\tstored"},
                 {{"--method", "zstd"}, "\tZstandard"},
                 {{"--method", "xz"}, "\txz"}};
    for (const auto& c : cases) {
        for (const bool encrypted : {false, true}) {
            std::vector<std::string> command{"zip", "add", path("a.zip"), path("text"), path("large"), "--bare-names"};
            command.insert(command.end(), c.options.begin(), c.options.end());
            std::vector<std::string> test{"zip", "test", path("a.zip")};
            for (auto* arguments : {&command, &test}) {
                if (encrypted) arguments->insert(arguments->end(), {"--password-file", path("password")});
            }
            EXPECT_EQ(call(command), ExitStatus::good) << err;
            EXPECT_EQ(call(test), ExitStatus::good) << err;
            EXPECT_THAT(out, HasSubstr(std::string("text\t5000\tverified") + c.method));
            EXPECT_THAT(out, HasSubstr(std::string("large\t17825792\tverified") + c.method));
            std::filesystem::remove(path("a.zip"));
        }
    }
    EXPECT_NE(call({"zip", "add", "--method", "rar", path("a.zip"), path("text")}), ExitStatus::good);
    EXPECT_FALSE(directory.has("a.zip"));
}

TEST_F(ZipCommandTest, NothingIsStoredPlainWhereEncryptionIsToBeExpected) {
    directory.write("secret", "a secret");
    directory.write("password", "sesame");
    const auto add = [&](std::vector<std::string> options) {
        options.insert(options.begin(), {"zip", "add", "--bare-names", path("a.zip"), path("secret")});
        return call(options);
    };
    EXPECT_EQ(add({"--encryption", "aes256"}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("--password-file"));
    EXPECT_EQ(add({"--encryption", "none", "--password-file", path("password")}), ExitStatus::failed);
    EXPECT_FALSE(directory.has("a.zip"));
    EXPECT_EQ(add({"--encryption", "aes256", "--password-file", path("password")}), ExitStatus::good) << err;
    const std::string encrypted = directory.read("a.zip");
    EXPECT_EQ(add({}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("--password-file"));
    EXPECT_EQ(directory.read("a.zip"), encrypted);
    EXPECT_EQ(add({"--encryption", "none"}), ExitStatus::good) << err;
    EXPECT_EQ(call({"zip", "test", path("a.zip")}), ExitStatus::good) << err;
}

TEST_F(ZipCommandTest, FilesAreEncryptedAsTheirArchiveIsOrSafely) {
    using archive::Encryption;
    directory.write("secret", "a secret");
    directory.write("another", "a secret, too");
    directory.write("password", "sesame");
    const auto add = [&](const char* archive, const char* name, std::vector<std::string> options) {
        options.insert(options.begin(),
                       {"zip", "add", "--bare-names", path(archive), path(name), "--password-file", path("password")});
        EXPECT_EQ(call(options), ExitStatus::good) << err;
        const Result<zip::Archive> made = zip::Archive::open(path(archive));
        return made.ok() ? made->members().back().encryption() : std::nullopt;
    };
    EXPECT_EQ(add("new.zip", "secret", {}), Encryption::aes256);
    EXPECT_EQ(add("old.zip", "secret", {"--encryption", "traditional"}), Encryption::traditional);
    EXPECT_EQ(add("old.zip", "another", {}), Encryption::traditional);
}

TEST_F(ZipCommandTest, TwoFilesOfOneMemberNameAreRefused) {
    directory.write("p1/f", "one");
    directory.write("p2/f", "two");
    EXPECT_EQ(call({"zip", "add", "--bare-names", path("a.zip"), "p1/f", "p2/f"}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("p1/f"));
    EXPECT_FALSE(directory.has("a.zip"));
    EXPECT_EQ(call({"zip", "add", path("a.zip"), "p1/f", "p2/f", "./p1/f"}), ExitStatus::good);
    EXPECT_EQ(call({"zip", "add", path("a.zip"), "p1/f", "p2/../p1/../f", "p2"}), ExitStatus::failed);  // no such file
}

TEST_F(ZipCommandTest, LinksAreStoredAsLinks) {
    directory.write("secret", "outside");
    directory.write("d/f", "inside");
    ASSERT_EQ(symlink("secret", "to file"), 0);
    ASSERT_EQ(symlink("d", "to directory"), 0);
    ASSERT_EQ(symlink("nowhere", "dangling"), 0);
    EXPECT_EQ(call({"zip", "add", path("a.zip"), "dangling", "to directory", "to file"}), ExitStatus::good) << err;
    call({"zip", "list", path("a.zip")});
    EXPECT_THAT(out, testing::ContainsRegex("dangling\t7\t.*\n?to directory\t1\t.*\n?to file\t6\t"));
    EXPECT_THAT(out, Not(HasSubstr("d/f")));
    EXPECT_EQ(call({"zip", "add", path("b.zip"), "to directory/"}), ExitStatus::good) << err;
    call({"zip", "list", path("b.zip")});
    EXPECT_THAT(out, HasSubstr("to directory/f\t6\t"));
    ASSERT_EQ(symlink("../secret", "d/secret"), 0);  // a member of that name would replace the file
    EXPECT_EQ(call({"zip", "add", "--bare-names", path("c.zip"), "secret", "d/secret"}), ExitStatus::failed);
    EXPECT_FALSE(directory.has("c.zip"));
}

TEST_F(ZipCommandTest, NamesThatBecomeOneInUnicodeAreRefused) {
    directory.write("\xE9", "Latin-1");
    directory.write("\xC3\xA9", "UTF-8");
    EXPECT_EQ(call({"zip", "add", path("a.zip"), "\xE9", "\xC3\xA9"}), ExitStatus::failed);
    EXPECT_FALSE(directory.has("a.zip"));
}

TEST_F(ZipCommandTest, ADirectoryThatCantBeReadIsAFailure) {
    directory.write("t/closed/x", "1");
    directory.write("t/y", "2");
    const pid_t child = fork();  // gives up the right to read everything
    if (child == 0) {
        std::filesystem::permissions(path("t/closed"), std::filesystem::perms::none);
        std::filesystem::permissions(path(""), std::filesystem::perms::all);
        constexpr uid_t nobody = 65534;
        const bool powerless = geteuid() != 0 || setuid(nobody) == 0;
        _exit(powerless && call({"zip", "add", path("a.zip"), "t"}) == ExitStatus::failed ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    std::filesystem::permissions(path("t/closed"), std::filesystem::perms::owner_all);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(call({"zip", "list", path("a.zip")}), ExitStatus::good);
    EXPECT_THAT(out, HasSubstr("t/y\t"));
}

TEST_F(ZipCommandTest, RemoveTakesDirectoriesByTheirNames) {
    for (const char* name : {"t/s", "t/s/"}) {
        directory.write("a.zip", ArchiveBuilder().add("t/s/", "").add("t/s/x", "1").add("t/sx", "2").finish());
        EXPECT_EQ(call({"zip", "remove", path("a.zip"), name}), ExitStatus::good) << err;
        call({"zip", "list", path("a.zip")});
        EXPECT_EQ(out.substr(0, out.find('\t')), "t/sx");
    }
    const std::string before = directory.read("a.zip");
    EXPECT_EQ(call({"zip", "remove", path("a.zip"), "gone"}), ExitStatus::failed);
    EXPECT_EQ(directory.read("a.zip"), before);
}

}  // namespace
}  // namespace quill::cli
