#include "cli/command_fixture.h"

#include <gmock/gmock.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace quill::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string head = "=ybegin part=1 line=128 size=9 name=a.bin\r\n=ypart begin=1 end=3\r\n";

class MergeCommand : public CommandTest {
  protected:
    void post(const std::string& name, int number, const std::string& data) const {
        const std::string part = std::to_string(number);
        directory.write(name, "=ybegin part=" + part + " line=128 size=9 name=a.bin\r\n=ypart begin=1 end=3\r\n" +
                                  data + "\r\n=yend size=3 part=" + part + "\r\n");
    }
};

TEST_F(MergeCommand, PartsOfYencAreKnownAsSuchAndOrderedByTheirNumbersBesideTheFirstFile) {
    directory.make_directory("news");
    post("news/x", 3, "CCC");
    post("y", 1, "AAA");
    post("z", 2, "BBB");
    EXPECT_EQ(call({"merge", "news/x", "y", "z"}), ExitStatus::good);
    const std::string joined = head + "AAA\r\nBBB\r\nCCC\r\n=yend size=3 part=3\r\n";
    EXPECT_EQ(out, "news/merged.txt\t" + std::to_string(joined.size()) + "\t3 parts\n");
    EXPECT_EQ(err, "");
    EXPECT_EQ(directory.read("news/merged.txt"), joined);
    EXPECT_THAT(directory.names(), ElementsAre("news", "y", "z"));
}

TEST_F(MergeCommand, OtherFilesAndThoseCalledTextAreJoinedInTheOrderGiven) {
    directory.write("b", "begin 644 x\n#0V%T\n");
    directory.write("a", "`\nend\n");
    EXPECT_EQ(call({"merge", "--output", "whole.uue", "b", "a"}), ExitStatus::good);
    EXPECT_EQ(directory.read("whole.uue"), "begin 644 x\r\n#0V%T\r\n`\r\nend\r\n");
    post("two", 2, "BBB");
    post("one", 1, "AAA");
    EXPECT_EQ(call({"merge", "--text", "two", "one"}), ExitStatus::good);
    EXPECT_EQ(directory.read("merged.txt"), directory.read("two") + directory.read("one"));
    EXPECT_EQ(call({"merge", "--force", "--yenc", "two", "b"}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("b is not a multipart yEnc encoded file."));
}

TEST_F(MergeCommand, FewerThanTwoPartsAreRefusedAndNothingIsTouched) {
    post("one", 1, "AAA");
    post("nine", 9, "ZZZ");
    post("eight", 8, "YYY");
    directory.write("merged.txt", "older");
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"merge"},
             {"merge", "one"},
             {"merge", "--yenc", "--text", "one", "nine"},
             {"merge", "one", "absent"},
             {"merge", "nine", "eight"},
             {"merge", "--text", "absent", "gone"},
         }) {
        EXPECT_EQ(call(arguments), ExitStatus::failed) << testing::PrintToString(arguments);
        EXPECT_NE(err, "");
        EXPECT_EQ(out, "");
    }
    EXPECT_EQ(directory.read("merged.txt"), "older");
    EXPECT_THAT(directory.names(), ElementsAre("eight", "merged.txt", "nine", "one"));
}

TEST_F(MergeCommand, WhatDidNotGoInIsSaidAndToldByTheStatus) {
    post("one", 1, "AAA");
    post("three", 3, "CCC");
    post("again", 3, "XXX");
    EXPECT_EQ(call({"merge", "again", "three", "one"}), ExitStatus::damaged);
    EXPECT_EQ(err, "quill: three: left out: Part 3 was found before\nquill: part 2: in none of the files\n");
    EXPECT_EQ(directory.read("merged.txt"), head + "AAA\r\nXXX\r\n=yend size=3 part=3\r\n");
    EXPECT_EQ(call({"merge", "--force", "one", "absent", "three", "."}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("quill: absent: left out: No such file or directory\n"));
    EXPECT_THAT(err, HasSubstr("quill: .: left out: Is a directory\n"));
    EXPECT_EQ(directory.read("merged.txt"), head + "AAA\r\nCCC\r\n=yend size=3 part=3\r\n");
    directory.write("plain", "words\n");
    EXPECT_EQ(call({"merge", "--force", "plain", "absent"}), ExitStatus::failed);
    EXPECT_EQ(directory.read("merged.txt"), "words\r\n");
}

TEST_F(MergeCommand, AnExistingOutputIsReplacedWithForceOnly) {
    post("one", 1, "AAA");
    post("two", 2, "BBB");
    directory.write("merged.txt", "older");
    chmod("merged.txt", 0600);
    EXPECT_EQ(call({"merge", "one", "two"}), ExitStatus::failed);
    EXPECT_THAT(err, testing::StartsWith("quill: merged.txt: is there already"));
    EXPECT_EQ(directory.read("merged.txt"), "older");
    EXPECT_EQ(call({"merge", "--force", "one", "two"}), ExitStatus::good);
    EXPECT_EQ(directory.read("merged.txt"), head + "AAA\r\nBBB\r\n=yend size=3 part=2\r\n");
    struct stat status = {};
    ASSERT_EQ(stat("merged.txt", &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(MergeCommand, JsonSaysWhatWentInAndWhatDidNot) {
    post("one", 1, "AAA");
    post("three", 3, "CCC");
    EXPECT_EQ(call({"merge", "--json", "--output", "m", "three", "absent", "one"}), ExitStatus::failed);
    EXPECT_EQ(out, R"([{"name": "m", "path": "m", "size": 96, "parts": 2, "missing": [2], )"
                   R"("left_out": [{"path": "absent", "reason": "No such file or directory"}]}])"
                   "\n");
    EXPECT_EQ(call({"merge", "--quiet", "--output", "n", "three", "one"}), ExitStatus::damaged);
    EXPECT_EQ(out, "");
}

TEST_F(MergeCommand, AnInputIsNeverReplaced) {
    directory.write("merged.txt", "one\r\n");
    directory.write("two", "two\r\n");
    EXPECT_EQ(call({"merge", "two", "merged.txt"}), ExitStatus::failed);
    EXPECT_EQ(err, "quill: merged.txt: the output would replace an input\n");
    EXPECT_EQ(call({"merge", "--output", "./two", "merged.txt", "two"}), ExitStatus::failed);
    EXPECT_EQ(call({"merge", "--output", "absent/two", "merged.txt", "two"}), ExitStatus::failed);
    EXPECT_EQ(err, "quill: absent/two: No such file or directory\n");
    EXPECT_EQ(directory.read("merged.txt"), "one\r\n");
    EXPECT_EQ(directory.read("two"), "two\r\n");
    EXPECT_THAT(directory.names(), ElementsAre("merged.txt", "two"));
}

}  // namespace
}  // namespace quill::cli
