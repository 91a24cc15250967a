#include "encoder/merge.h"

#include "support/temporary_directory.h"

#include <gmock/gmock.h>

namespace quill::encoder {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Merge : public ::testing::Test {
  protected:
    std::string path(const std::string& name) const { return dir_.path(name); }
    std::string put(const std::string& name, const std::string& bytes) const { return dir_.write(name, bytes); }
    std::string merged() const { return dir_.read("merged.txt"); }
    /// A post that holds part `number` with the data `data`.
    static std::string post(int number, const std::string& data, const std::string& before = "",
                            const std::string& behind = "") {
        return before + "=ybegin part=" + std::to_string(number) +
               " line=128 size=9 name=a.bin\r\n=ypart begin=1 end=3\r\n" + data +
               "\r\n=yend size=3 part=" + std::to_string(number) + "\r\n" + behind;
    }
    const std::string head_ = "=ybegin part=1 line=128 size=9 name=a.bin\r\n=ypart begin=1 end=3\r\n";

    tests::TemporaryDirectory dir_;
};

TEST_F(Merge, YencPartsJoinByTheirNumbersWithHeadersAndTrailersBetweenThemCutOut) {
    const std::vector<std::string> paths = {put("c", post(3, "CCC", "Subject: 3\r\n", "last words\r\n")),
                                            put("a", post(1, "A=yA", "Subject: 1\r\n")),
                                            put("b", post(2, "BBB", "leading text\r\n", "-- \r\nsignature\r\n"))};
    const auto result = merge_yenc(paths, path("merged.txt"));
    ASSERT_TRUE(result) << result.error().text;
    EXPECT_EQ(merged(), "Subject: 1\r\n" + head_ + "A=yA\r\nBBB\r\nCCC\r\n=yend size=3 part=3\r\nlast words\r\n");
    EXPECT_EQ(result->parts, 3U);
    EXPECT_EQ(result->size, merged().size());
    EXPECT_THAT(result->left_out, IsEmpty());
}

TEST_F(Merge, PartsOneAndThreeOfTwoFilesMergeOnlyTheFirst) {
    const auto result = merge_yenc(std::vector{put("a", post(1, "A")), put("c", post(3, "C"))}, path("merged.txt"));
    ASSERT_TRUE(result);
    EXPECT_EQ(merged(), head_ + "A\r\n");
    ASSERT_EQ(result->left_out.size(), 1U);
    EXPECT_EQ(result->left_out[0].path, path("c"));
}

TEST_F(Merge, SeveralPartsInOneFileAreAllJoined) {
    const std::vector<std::string> paths = {put("two", post(2, "BB") + post(3, "CC")), put("one", post(1, "AA"))};
    ASSERT_TRUE(merge_yenc(paths, path("merged.txt")));
    EXPECT_EQ(merged(), head_ + "AA\r\nBB\r\nCC\r\n=yend size=3 part=3\r\n");
}

TEST_F(Merge, MissingDoubleAndOutlyingPartsAreToldAndTheRestIsJoined) {
    const std::vector<std::string> paths = {put("a", post(1, "A")), put("again", post(1, "X")), put("c", post(3, "C")),
                                            put("far", post(9, "Z"))};
    const auto result = merge_yenc(paths, path("merged.txt"));
    ASSERT_TRUE(result);
    EXPECT_EQ(merged(), head_ + "A\r\nC\r\n=yend size=3 part=3\r\n");
    EXPECT_THAT(result->missing, ElementsAre(2U));
    ASSERT_EQ(result->left_out.size(), 2U);
    EXPECT_EQ(result->left_out[0].path, path("again"));
    EXPECT_EQ(result->left_out[1].path, path("far"));
}

TEST_F(Merge, WhatIsNoSeriesLeavesAnOlderMergeAlone) {
    put("merged.txt", "older");
    const std::string one = put("one", post(1, "A"));
    const auto plain =
        merge_yenc(std::vector{one, put("plain", "=ybegin line=128 size=3 name=a\r\nabc\r\n")}, path("merged.txt"));
    ASSERT_FALSE(plain);
    EXPECT_EQ(plain.error().text, "plain is not a multipart yEnc encoded file.");
    EXPECT_FALSE(merge_yenc(std::vector{put("three", post(3, "C")), put("four", post(4, "D"))}, path("merged.txt")));
    EXPECT_FALSE(merge_yenc(std::vector{one, path("absent")}, path("merged.txt")));
    EXPECT_FALSE(merge_text(std::vector{path("absent"), dir_.path()}, path("merged.txt")));
    EXPECT_EQ(merged(), "older");
    EXPECT_THAT(dir_.names(), ElementsAre("four", "merged.txt", "one", "plain", "three"));
}

TEST_F(Merge, TextJoinsInTheOrderGivenWithEachLineEndedByCrLf) {
    const std::vector<std::string> paths = {put("b", "unix\nlines\n"), path("absent"), put("a", "begin 644 x\rno end"),
                                            put("empty", "")};
    const auto result = merge_text(paths, path("merged.txt"));
    ASSERT_TRUE(result);
    EXPECT_EQ(merged(), "unix\r\nlines\r\nbegin 644 x\r\nno end\r\n");
    EXPECT_EQ(result->parts, 3U);
    ASSERT_EQ(result->left_out.size(), 1U);
    EXPECT_THAT(result->left_out[0].reason, HasSubstr("No such file"));
}

TEST_F(Merge, AMergeOfItsOwnOldOutputReadsWhatStoodThere) {
    const std::vector<std::string> paths = {put("merged.txt", "one\r\n"), put("two", "two\r\n")};
    ASSERT_TRUE(merge_text(paths, path("merged.txt")));
    EXPECT_EQ(merged(), "one\r\ntwo\r\n");
}

TEST(FindParts, ReadsTheNumberFromTheLineBeforeAndUnixTextToo) {
    const std::string head = "x\n=ybegin line=128 part=12 name=q\n=ypart begin=1 end=2\n";
    const auto parts = find_parts(head + "ab\n=yend\n", 4);
    ASSERT_EQ(parts.size(), 1U);
    EXPECT_EQ(parts[0].number, 12U);
    EXPECT_EQ(parts[0].file, 4U);
    EXPECT_EQ(parts[0].data, head.size());
    EXPECT_THAT(find_parts("=ybegin part=1\r\nno part line\r\n", 0), IsEmpty());
}

}  // namespace
}  // namespace quill::encoder
