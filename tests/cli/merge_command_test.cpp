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

    /// Writes one of `parts` posts of a uuencoded file.
    void piece(const std::string& name, int number, int parts) const {
        directory.write(name, "Subject: cat.jpg (" + std::to_string(number) + "/" + std::to_string(parts) + ")\n\n" +
                                  (number == 1 ? "begin 644 cat.jpg\n" : "") + full_rows +
                                  (number == parts ? "`\nend\n" : ""));
    }

    const std::string full_rows = [] {
        std::string rows;
        for (int row = 0; row < 10; ++row) rows += "M" + std::string(60, '#') + "\n";
        return rows;
    }();
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
    EXPECT_EQ(call({"merge", "--text", "two", "one"}), ExitStatus::damaged) << "the order is wrong";
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
    EXPECT_EQ(err, "quill: three: left out: Part 3 was found before\nquill: merged.txt: Part 2 was not found\n");
    EXPECT_EQ(directory.read("merged.txt"), head + "AAA\r\nXXX\r\n=yend size=3 part=3\r\n");
    EXPECT_EQ(call({"merge", "--force", "one", "absent", "three", "."}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("quill: absent: left out: No such file or directory\n"));
    EXPECT_THAT(err, HasSubstr("quill: .: left out: Is a directory\n"));
    EXPECT_EQ(directory.read("merged.txt"), head + "AAA\r\nCCC\r\n=yend size=3 part=3\r\n");
    directory.write("plain", "words\n");
    EXPECT_EQ(call({"merge", "--force", "plain", "absent"}), ExitStatus::failed);
    EXPECT_EQ(directory.read("merged.txt"), "words\r\n");
}

TEST_F(MergeCommand, APartOfATextThatIsMissingOrInTheWrongPlaceIsReported) {
    piece("one", 1, 3);
    piece("two", 2, 3);
    piece("three", 3, 3);
    const struct {
        std::vector<std::string> files;
        ExitStatus status;
        const char* missing;
        const char* in_order;
    } table[] = {
        {{"one", "two", "three"}, ExitStatus::good, "[]", "true"},
        {{"one", "three"}, ExitStatus::damaged, "[2]", "true"},
        {{"one", "two"}, ExitStatus::damaged, "[3]", "true"},
        {{"two", "three"}, ExitStatus::damaged, "[1]", "true"},
        {{"one", "three", "two"}, ExitStatus::damaged, "[]", "false"},
    };
    for (const auto& row : table) {
        std::vector<std::string> arguments = {"merge", "--force", "--json"};
        arguments.insert(arguments.end(), row.files.begin(), row.files.end());
        EXPECT_EQ(call(arguments), row.status) << testing::PrintToString(row.files);
        EXPECT_THAT(out, HasSubstr(std::string("\"missing\": ") + row.missing + ", \"in_order\": " + row.in_order));
        EXPECT_EQ(err.empty(), row.status == ExitStatus::good);
        EXPECT_TRUE(directory.has("merged.txt"));
    }
}

TEST_F(MergeCommand, WhereOnlyTheNamesHaveNumbersTheseAreTheOrder) {
    for (const char* name : {"x1", "x2", "x10", "9041.post", "9043.post", "a", "b7"}) directory.write(name, "words\n");
    const struct {
        std::vector<std::string> files;
        ExitStatus status;
        const char* said;
    } table[] = {
        {{"x1", "x2"}, ExitStatus::good, ""},
        {{"x1", "x10", "x2"}, ExitStatus::damaged, "Parts 3-9 were not found"},
        {{"x1", "x10", "x2"}, ExitStatus::damaged, "not in the order"},
        {{"9041.post", "9043.post"}, ExitStatus::good, ""},
        {{"a", "b7", "x1"}, ExitStatus::good, ""},
    };
    for (const auto& row : table) {
        std::vector<std::string> arguments = {"merge", "--force"};
        arguments.insert(arguments.end(), row.files.begin(), row.files.end());
        EXPECT_EQ(call(arguments), row.status) << testing::PrintToString(row.files) << err;
        EXPECT_THAT(err, HasSubstr(row.said));
    }
}

TEST_F(MergeCommand, YencPartsThatTheTotalPromisesAreMissed) {
    post("one", 1, "AAA");
    post("two", 2, "BBB");
    std::string two = directory.read("two");
    two.replace(two.find("part=2"), 6, "part=2 total=4");
    directory.write("two", two);
    EXPECT_EQ(call({"merge", "--json", "one", "two"}), ExitStatus::damaged);
    EXPECT_THAT(out, HasSubstr("\"missing\": [3, 4]"));
}

TEST_F(MergeCommand, AnExistingOutputIsReplacedWithForceOnly) {
    post("one", 1, "AAA");
    post("two", 2, "BBB");
    directory.write("merged.txt", "older");
    chmod("merged.txt", 0600);
    EXPECT_EQ(call({"merge", "one", "two"}), ExitStatus::failed);
    EXPECT_THAT(err, testing::StartsWith("quill: merged.txt: exists already"));
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
    EXPECT_EQ(out, R"([{"name": "m", "path": "m", "size": 96, "parts": 2, "missing": [2], "in_order": true, )"
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
