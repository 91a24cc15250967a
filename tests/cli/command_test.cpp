#include "cli/command_fixture.h"
#include "files/extended_attributes.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
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
    EXPECT_EQ(call({"decode", "--again", "cat.uue", "cat.uue"}), ExitStatus::good);
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
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    directory.write("cat.uue", cat_post);
    EXPECT_EQ(call({"decode", "gone.uue", "cat.uue", "pipe"}), ExitStatus::failed);
    EXPECT_EQ(out, "cat.txt\t3\twhole\tUUE\n");
    EXPECT_EQ(err, "quill: gone.uue: No such file or directory\nquill: pipe: Not a regular file\n");
}

TEST_F(Command, TheOutputDirectoryIsMadeAndGoesAgainIfItStaysEmpty) {
    directory.write("cat.uue", cat_post);
    directory.write("note", "Nothing in here.\n");
    directory.write("empty.uue", "begin 644 a\n\x01\x02\x03\n\x01\n");
    EXPECT_EQ(call({"decode", "--into", "new", "note"}), ExitStatus::nothing);
    EXPECT_FALSE(directory.has("new"));
    call({"decode", "--into", "new/", "empty.uue"});
    EXPECT_FALSE(directory.has("new"));
    EXPECT_EQ(call({"decode", "--into", "new/", "cat.uue"}), ExitStatus::good);
    EXPECT_EQ(directory.read("new/cat.txt"), "Cat");
    directory.make_directory("mine");
    EXPECT_EQ(call({"decode", "--into", "mine", "note"}), ExitStatus::nothing);
    EXPECT_TRUE(directory.has("mine"));
}

TEST_F(Command, AnOutputDirectoryThatCannotBeIsSaidAndNothingIsWritten) {
    directory.write("cat.uue", cat_post);
    ASSERT_EQ(symlink("nowhere", "dangling"), 0);
    const struct {
        const char* into;
        const char* said;
    } table[] = {
        {"gone/new", "quill: gone/new: No such file or directory\n"},
        {"cat.uue", "quill: cat.uue: Not a directory\n"},
        {"cat.uue/new", "quill: cat.uue/new: Not a directory\n"},
        {"dangling", "quill: dangling: No such file or directory\n"},
    };
    for (const auto& row : table) {
        EXPECT_EQ(call({"decode", "--into", row.into, "cat.uue"}), ExitStatus::failed);
        EXPECT_EQ(err, row.said);
    }
    EXPECT_EQ(directory.names(), (std::vector<std::string>{"cat.uue", "dangling"}));
}

TEST_F(Command, AnotherRunWritesNothing) {
    directory.write("two.uue", "begin 644 a.txt\n#0V%T\n`\nend\nbegin 644 a.txt\n#1&]G\n`\nend\n");
    EXPECT_EQ(call({"decode", "two.uue"}), ExitStatus::good);
    EXPECT_EQ(out, "a.txt\t3\twhole\tUUE\na (2).txt\t3\twhole\tUUE\n");
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(call({"decode", "two.uue"}), ExitStatus::good);
        EXPECT_EQ(out, "a.txt\t3\twhole\tUUE\talready there\na (2).txt\t3\twhole\tUUE\talready there\n");
    }
    EXPECT_EQ(call({"decode", "--json", "two.uue"}), ExitStatus::good);
    EXPECT_THAT(out, HasSubstr(R"("path": "a (2).txt", "size": 3, "format": "UUE", "verdict": "whole", )"
                               R"("already_there": true)"));
    EXPECT_EQ(directory.names(), (std::vector<std::string>{"a (2).txt", "a.txt", "two.uue"}));
    EXPECT_EQ(call({"decode", "--again", "two.uue"}), ExitStatus::good);
    EXPECT_EQ(directory.names().size(), 5U);
}

TEST_F(Command, OtherBytesOfTheSameSizeAndLinksAreNotAlreadyThere) {
    directory.write("cat.uue", cat_post);
    directory.write("cat.txt", "CAT");
    directory.write("elsewhere", "Cat");
    ASSERT_EQ(symlink("elsewhere", "cat (2).txt"), 0);
    EXPECT_EQ(call({"decode", "cat.uue"}), ExitStatus::good);
    EXPECT_EQ(out, "cat (3).txt\t3\twhole\tUUE\n");
    EXPECT_EQ(call({"decode", "cat.uue"}), ExitStatus::good);
    EXPECT_EQ(out, "cat (3).txt\t3\twhole\tUUE\talready there\n");
}

/// Returns an extended attribute of `path`; empty if it has none.
std::string attribute(const char* path, const char* name) {
    std::string value(4096, '\0');
    const ssize_t size = getxattr(path, name, value.data(), value.size());
    value.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return value;
}

TEST_F(Command, ProvenanceNotesTheMailInNewFilesOnly) {
    const std::string subject(1200, 's');
    directory.write("cat.eml", "Subject: " + subject + "\nMessage-ID: <7@example.org>\n" + cat_post);
    directory.write("probe", "");
    if (!files::set_extended_attribute("probe", "user.probe", "x")) {
        EXPECT_EQ(call({"decode", "--provenance", "cat.eml"}), ExitStatus::failed);
        EXPECT_EQ(directory.read("cat.txt"), "Cat");
        return;
    }
    EXPECT_EQ(call({"decode", "cat.eml"}), ExitStatus::good);
    EXPECT_EQ(call({"decode", "--provenance", "cat.eml"}), ExitStatus::good);
    EXPECT_THAT(out, HasSubstr("already there"));
    EXPECT_EQ(attribute("cat.txt", "user.xdg.origin.email.from"), "") << "a file that was there is left alone";

    EXPECT_EQ(call({"decode", "--provenance", "--again", "--json", "cat.eml"}), ExitStatus::good);
    EXPECT_THAT(out, HasSubstr(R"("origin": {"from": "ada@example.org", "subject": "sss)"));
    EXPECT_EQ(attribute("cat (2).txt", "user.xdg.origin.email.from"), "ada@example.org");
    EXPECT_EQ(attribute("cat (2).txt", "user.xdg.origin.email.message-id"), "<7@example.org>");
    EXPECT_EQ(attribute("cat (2).txt", "user.xdg.origin.email.subject"), subject.substr(0, 1000));

    EXPECT_EQ(call({"zip", "add", "cat.zip", "cat (2).txt"}), ExitStatus::good);
    EXPECT_EQ(directory.read("cat.zip").find("ada@example.org"), std::string::npos) << "an archive leaves it out";
}

TEST_F(Command, DirectoriesAreWalkedWithoutHiddenFilesAndLinks) {
    directory.write("mail/1", cat_post);
    directory.write("mail/deep/er/2", dog_post);
    directory.write("mail/.hidden", cut_post);
    directory.write("mail/.folder/3", cut_post);
    directory.write("mail/.quill-1-0.part", cut_post);
    directory.write("cut", cut_post);
    ASSERT_EQ(symlink("../cut", "mail/link"), 0);
    ASSERT_EQ(symlink("..", "mail/deep/round"), 0);
    EXPECT_EQ(call({"list", "mail"}), ExitStatus::good);
    EXPECT_EQ(out, "cat.txt\t3\twhole\tUUE\ndog.txt\t4\twhole\tUUE\n");
    EXPECT_EQ(call({"decode", "mail/"}), ExitStatus::good);
    EXPECT_TRUE(directory.has("mail/cat.txt") && directory.has("mail/deep/er/dog.txt"));
}

TEST_F(Command, WhatAMaildirHoldsGoesBesideIt) {
    directory.write("in/Maildir/cur/1:2,S", cat_post);
    directory.write("in/Maildir/tmp/2", cut_post);
    directory.make_directory("in/Maildir/new");
    directory.write("in/Maildir/.Sent/new/3", dog_post);
    directory.make_directory("in/Maildir/.Sent/cur");
    directory.write("in/Maildir/.other/4", cut_post);
    for (const char* input : {"in/Maildir", "in", "in/Maildir/", "in/Maildir/cur"}) {
        EXPECT_EQ(call({"decode", input}), ExitStatus::good) << input;
        EXPECT_EQ(directory.read("in/cat.txt"), "Cat");
        ASSERT_EQ(unlink("in/cat.txt"), 0);
        unlink("in/dog.txt");
    }
    EXPECT_EQ(call({"decode", "in/Maildir"}), ExitStatus::good);
    EXPECT_EQ(directory.read("in/dog.txt"), "Dogs");
    EXPECT_FALSE(directory.has("in/cut.txt") || directory.has("in/Maildir/cut.txt"));
}

TEST_F(Command, NamesMayStandInAList) {
    directory.write("a b", cat_post);
    directory.write("c\nd", dog_post);
    directory.write("list", "a b\n\n");
    const std::string two("c\nd\0a b\0", 8);
    EXPECT_EQ(call({"list", "--files-from", "list"}), ExitStatus::good);
    EXPECT_EQ(out, "cat.txt\t3\twhole\tUUE\n");
    EXPECT_EQ(call({"list", "--files-from", "-"}, two), ExitStatus::good);
    EXPECT_EQ(out, "dog.txt\t4\twhole\tUUE\ncat.txt\t3\twhole\tUUE\n");
    EXPECT_EQ(call({"list", "a b", "--files-from", "-"}, "gone"), ExitStatus::failed);
    EXPECT_EQ(out, "cat.txt\t3\twhole\tUUE\n");
    EXPECT_EQ(err, "quill: gone: No such file or directory\n");
    EXPECT_EQ(call({"list", "--files-from", "absent"}), ExitStatus::failed);
    EXPECT_EQ(call({"list", "--files-from", "-"}, ""), ExitStatus::nothing);
}

TEST_F(Command, AFileWithNothingInItIsDescribed) {
    const struct {
        std::string bytes;
        const char* looks_like;
    } table[] = {
        {"%PDF-1.7\n", "a PDF document"},
        {"", "it is empty"},
        {"Nothing in here.\n", "plain text"},
        {"From: ada@example.org\n\nHello\n", "a message"},
        {std::string("\0\1\2\3", 4), "data of an unknown type"},
    };
    for (const auto& row : table) {
        directory.write("f", row.bytes);
        EXPECT_EQ(call({"list", "f"}), ExitStatus::nothing);
        EXPECT_THAT(err, testing::MatchesRegex("quill: f: [^\n]*MIME[^\n]*\n"));
        EXPECT_THAT(err, HasSubstr(row.looks_like));
        EXPECT_EQ(call({"list", "--quiet", "f"}), ExitStatus::nothing);
        EXPECT_EQ(err, "");
    }
}

TEST_F(Command, AmongSeveralInputsThoseWithNothingAreNamed) {
    directory.write("cat.uue", cat_post);
    directory.write("note", "Nothing in here.\n");
    directory.write("empty", "");
    directory.write("mail/1", dog_post);
    directory.write("mail/2", "Nothing in here.\n");
    EXPECT_EQ(call({"list", "note", "cat.uue", "empty", "mail"}), ExitStatus::good);
    EXPECT_THAT(err, testing::MatchesRegex("quill: note: [^\n]*plain text\nquill: empty: [^\n]*is empty\n"
                                           "quill: mail: [^\n]*in 1 of 2 files\n"));
    EXPECT_EQ(call({"list", "note", "empty"}), ExitStatus::nothing);
    EXPECT_THAT(err, testing::MatchesRegex("quill: note: [^\n]*\nquill: empty: [^\n]*\n"));
    EXPECT_EQ(call({"list", "--json", "note", "cat.uue"}), ExitStatus::good);
    EXPECT_EQ(err, "");
}

TEST_F(Command, ProblemsNameTheInputThatTheyAreIn) {
    const std::string rows = "M" + std::string(60, '#') + "\n" + "M" + std::string(60, '#') + "\n";
    directory.write("1", "Subject: a.bin (1/3)\n\nbegin 644 a.bin\n" + rows);
    directory.write("3", "Subject: a.bin (3/3)\n\n" + rows + "#0V%T\n`\nend\n");
    directory.write("cut", cut_post);
    EXPECT_EQ(call({"list", "1", "3", "cut"}), ExitStatus::damaged);
    EXPECT_THAT(err, testing::ContainsRegex("quill: a.bin: in 3, at byte [0-9]+: Part 2 of 3 is missing"));
    EXPECT_THAT(err, testing::ContainsRegex("quill: cut.txt: in cut, at byte "));
    EXPECT_EQ(call({"list", "--json", "1", "3"}), ExitStatus::damaged);
    EXPECT_THAT(out, HasSubstr(R"("kind": "missing-part", "input": "3")"));
    EXPECT_EQ(call({"list", "cut"}), ExitStatus::damaged);
    EXPECT_THAT(err, StartsWith("quill: cut.txt: at byte "));
}

TEST_F(Command, AFileThatHoldsACopyHoldsSomething) {
    const std::string rows = "M" + std::string(60, '#') + "\n" + "M" + std::string(60, '#') + "\n";
    directory.write("1", "Subject: a.bin (1/2)\n\nbegin 644 a.bin\n" + rows);
    directory.write("2", "Subject: a.bin (2/2)\n\n" + rows + "`\nend\n");
    directory.write("again", directory.read("2"));
    EXPECT_EQ(call({"list", "1", "2", "again"}), ExitStatus::good);
    EXPECT_EQ(err, "");
}

TEST_F(Command, BadUsageGivesStatusThree) {
    const std::vector<std::vector<std::string>> table{
        {},
        {"decode"},
        {"decode", "--into"},
        {"list", "--json", "--json-lines", "x"},
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

TEST_F(Command, AComplaintNamesTheCommandAndWhatIsWrong) {
    const struct {
        std::vector<std::string> arguments;
        const char* command;
        const char* named;
    } table[] = {
        {{"frob\x1bnicate", "x"}, "quill: ", "frob?nicate"},
        {{"--bogus"}, "quill: ", "--bogus"},
        {{"zip", "pack"}, "quill zip: ", "pack"},
        {{"decode"}, "quill decode: ", "file"},
        {{"merge", "x"}, "quill merge: ", "two files"},
        {{"zip", "list"}, "quill zip list: ", "archive"},
        {{"list", "--into", "x", "y"}, "quill list: ", "--into"},
        {{"decode", "--into"}, "quill decode: ", "--into"},
        {{"list", "--json", "--json-lines", "x"}, "quill list: ", "--json and --json-lines"},
        {{"encode", "--format", "zip", "x"}, "quill encode: ", "binhex"},
        {{"encode", "--format", "yenc", "--line", "0", "x"}, "quill encode: ", "--line"},
    };
    for (const auto& row : table) {
        EXPECT_EQ(call(row.arguments), ExitStatus::failed) << err;
        EXPECT_THAT(err, StartsWith(row.command));
        EXPECT_THAT(err, HasSubstr(row.named));
        EXPECT_THAT(err, testing::EndsWith("--help\n"));
    }
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
    EXPECT_THAT(out, AllOf(HasSubstr("\nCommands:\n"), Not(HasSubstr("Subcommands"))));
    EXPECT_EQ(call({"decode", "--help"}), ExitStatus::good);
    for (const char* said :
         {"--into", "--all", "--forks", "--json", "--json-lines", "--again", "--files-from", "--quiet", "FILE"})
        EXPECT_THAT(out, HasSubstr(said));
    EXPECT_EQ(err, "");
}

TEST_F(Command, EachCommandsHelpHasAnExampleOfIt) {
    const std::vector<std::vector<std::string>> commands = {
        {"decode"},        {"list"},           {"encode"},           {"merge"},
        {"zip", "list"},   {"zip", "extract"}, {"zip", "add"},       {"zip", "remove"},
        {"zip", "test"},   {"book", "create"}, {"book", "list"},     {"book", "extract"},
        {"book", "check"}, {"album", "list"},  {"album", "extract"}, {"album", "create"}};
    for (std::vector<std::string> command : commands) {
        std::string example = "\nExample: quill";
        for (const std::string& word : command) example += " " + word;
        command.emplace_back("--help");
        EXPECT_EQ(call(command), ExitStatus::good);
        EXPECT_THAT(out, HasSubstr(example + " "));
    }
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
