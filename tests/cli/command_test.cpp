#include "cli/command_fixture.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace quill::cli {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string cat_post = "From: ada@example.org\n\nbegin 644 cat.txt\n#0V%T\n`\nend\n";      // "Cat"
const std::string dog_post = "From: ben@example.org\n\nbegin 644 dog.txt\n$1&]G<P``\n`\nend\n";  // "Dogs"
const std::string cut_post = "From: cleo@example.org\n\nbegin 644 cut.txt\n#0V%T\n";             // no end

class Command : public CommandTest {};

TEST_F(Command, DecodeWritesBesideTheInput) {
    directory.make_directory("mail");
    directory.write("mail/cat.uue", cat_post);
    EXPECT_EQ(call({"decode", "mail/cat.uue"}), ExitStatus::good);
    EXPECT_EQ(out, "cat.txt\t3\twhole\tUUE\n");
    EXPECT_EQ(err, "");
    EXPECT_EQ(directory.read("mail/cat.txt"), "Cat");
}

TEST_F(Command, DecodeWritesIntoTheDirectoryNamed) {
    directory.make_directory("out");
    directory.write("cat.uue", cat_post);
    EXPECT_EQ(call({"decode", "--into", "out", "cat.uue"}), ExitStatus::good);
    EXPECT_EQ(directory.names(), (std::vector<std::string>{"cat.uue", "out"}));
    EXPECT_EQ(directory.read("out/cat.txt"), "Cat");
}

TEST_F(Command, ANameThatIsTakenIsNumberedAndNothingIsReplaced) {
    directory.write("cat.uue", cat_post);
    directory.write("cat.txt", "mine");
    EXPECT_EQ(call({"decode", "cat.uue", "cat.uue"}), ExitStatus::good);
    EXPECT_EQ(out, "cat (2).txt\t3\twhole\tUUE\ncat (3).txt\t3\twhole\tUUE\n");
    EXPECT_EQ(directory.read("cat.txt"), "mine");
    EXPECT_EQ(directory.read("cat (2).txt"), "Cat");
    EXPECT_EQ(directory.read("cat (3).txt"), "Cat");
}

TEST_F(Command, TheOutputIsNeverExecutableWhateverTheMessageSays) {
    directory.write("cat.uue", "begin 4777 cat.sh\n#0V%T\n`\nend\n");
    EXPECT_EQ(call({"decode", "cat.uue"}), ExitStatus::good);
    struct stat status = {};
    ASSERT_EQ(stat("cat.sh", &status), 0);
    EXPECT_EQ(status.st_mode & 07111U, 0U);
}

TEST_F(Command, ListTellsTheSameAndWritesNothing) {
    directory.write("cat.uue", cat_post);
    EXPECT_EQ(call({"list", "cat.uue"}), ExitStatus::good);
    EXPECT_EQ(out, "cat.txt\t3\twhole\tUUE\n");
    EXPECT_EQ(directory.names(), std::vector<std::string>{"cat.uue"});
}

TEST_F(Command, DamageIsWrittenAsFarAsItGoesAndGivesStatusOne) {
    directory.write("cut.uue", cut_post);
    EXPECT_EQ(call({"decode", "cut.uue"}), ExitStatus::damaged);
    EXPECT_EQ(out, "cut.txt\t3\tincomplete\tUUE\n");
    EXPECT_THAT(err, StartsWith("quill: cut.txt: at byte "));
    EXPECT_EQ(directory.read("cut.txt"), "Cat");
}

TEST_F(Command, NothingFoundGivesStatusTwo) {
    directory.write("note", "Nothing in here.\n");
    for (const char* command : {"decode", "list"}) {
        EXPECT_EQ(call({command, "note"}), ExitStatus::nothing);
        EXPECT_EQ(out, "");
        EXPECT_EQ(call({command, "--json", "note"}), ExitStatus::nothing);
        EXPECT_EQ(out, "[]\n");
    }
    EXPECT_EQ(directory.names(), std::vector<std::string>{"note"});
}

TEST_F(Command, AnInputThatCannotBeReadIsSaidAndTheOthersAreDecoded) {
    directory.write("cat.uue", cat_post);
    EXPECT_EQ(call({"decode", "gone.uue", "cat.uue", "."}), ExitStatus::failed);
    EXPECT_EQ(out, "cat.txt\t3\twhole\tUUE\n");
    EXPECT_EQ(err, "quill: gone.uue: No such file or directory\nquill: .: Is a directory\n");
}

TEST_F(Command, AnOutputDirectoryThatIsNoneIsSaidAndNothingIsWritten) {
    directory.write("cat.uue", cat_post);
    EXPECT_EQ(call({"decode", "--into", "gone", "cat.uue"}), ExitStatus::failed);
    EXPECT_EQ(err, "quill: gone: No such file or directory\n");
    EXPECT_EQ(call({"decode", "--into", "cat.uue", "cat.uue"}), ExitStatus::failed);
    EXPECT_EQ(err, "quill: cat.uue: Not a directory\n");
    EXPECT_EQ(directory.names(), std::vector<std::string>{"cat.uue"});
}

TEST_F(Command, BadUsageGivesStatusThree) {
    const std::vector<std::vector<std::string>> table{
        {},
        {"decode"},
        {"decode", "--into"},
        {"decode", "--bogus", "x"},
        {"frobnicate", "x"},
        {"list", "--into", "x", "y"},
    };
    for (const auto& arguments : table) {
        EXPECT_EQ(call(arguments), ExitStatus::failed) << testing::PrintToString(arguments);
        EXPECT_EQ(out, "");
        EXPECT_NE(err, "");
    }
}

TEST_F(Command, ACommandThatThereIsNotIsNamed) {
    EXPECT_EQ(call({"frob\x1bnicate", "x"}), ExitStatus::failed);
    EXPECT_THAT(err, StartsWith("quill: There is no command frob?nicate\n"));
}

TEST_F(Command, AProgramInDisguiseIsToldOfAndItsExtensionShows) {
    directory.write("a.uue", "begin 644 holiday.jpg      .exe\n#0V%T\n`\nend\nbegin 644 setup.exe\n#0V%T\n`\nend\n");
    EXPECT_EQ(call({"decode", "a.uue"}), ExitStatus::good);
    EXPECT_EQ(out, "holiday.jpg .exe\t3\twhole\tUUE\nsetup.exe\t3\twhole\tUUE\n");
    EXPECT_THAT(err, StartsWith("quill: holiday.jpg .exe: at byte "));
    EXPECT_THAT(err,
                testing::EndsWith("The name makes this file look like something else, but it is a program (.exe)\n"));
    EXPECT_EQ(directory.read("holiday.jpg .exe"), "Cat");
}

TEST_F(Command, HelpTellsEveryOptionAndTheExitStatus) {
    EXPECT_EQ(call({"--help"}), ExitStatus::good);
    for (const char* said : {"decode", "list", "Exit status"}) EXPECT_THAT(out, HasSubstr(said));
    EXPECT_EQ(call({"decode", "--help"}), ExitStatus::good);
    for (const char* said : {"--into", "--all", "--forks", "--json", "--quiet", "FILE"})
        EXPECT_THAT(out, HasSubstr(said));
    EXPECT_EQ(err, "");
}

TEST_F(Command, QuietLeavesTheResultsOut) {
    directory.write("cut.uue", cut_post);
    EXPECT_EQ(call({"decode", "--quiet", "cut.uue"}), ExitStatus::damaged);
    EXPECT_EQ(out + err, "");
    EXPECT_EQ(directory.read("cut.txt"), "Cat");
}

TEST_F(Command, StandardInputIsDecodedIntoTheCurrentDirectory) {
    EXPECT_EQ(call({"decode", "--json", "-"}, dog_post), ExitStatus::good);
    EXPECT_THAT(out, HasSubstr(R"("path": "dog.txt")"));
    EXPECT_THAT(out, HasSubstr(R"("sources": ["-"])"));
    EXPECT_EQ(directory.names(), std::vector<std::string>{"dog.txt"});
    EXPECT_EQ(directory.read("dog.txt"), "Dogs");
}

TEST_F(Command, FileNamesThatLookLikeSomethingElseAreFileNames) {
    for (const std::string name : {"list", "[a,b]", "-dash", "g\xFC.uue"}) {
        directory.write(name, cat_post);
        EXPECT_EQ(call({"list", "--json", "--", name}), ExitStatus::good) << err;
    }
    EXPECT_THAT(out, HasSubstr(R"("sources": ["g\udcfc.uue"])"));
    EXPECT_EQ(call({"list", "list", "[a,b]"}), ExitStatus::good) << err;
    EXPECT_EQ(call({"list", ""}), ExitStatus::failed);
}

TEST_F(Command, TextsOfMessagesAreWrittenOnRequest) {
    directory.write("mail.eml",
                    "From: ada@example.org\nMIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=b\n\n"
                    "--b\nContent-Type: text/plain\n\nHello\n"
                    "--b\nContent-Type: text/plain; name=a.txt\nContent-Transfer-Encoding: base64\n\nQ2F0\n--b--\n");
    EXPECT_EQ(call({"list", "mail.eml"}), ExitStatus::good);
    EXPECT_EQ(out, "a.txt\t3\twhole\tMIME\n");
    EXPECT_EQ(call({"list", "--all", "mail.eml"}), ExitStatus::good);
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 2) << out;
}

}  // namespace
}  // namespace quill::cli
