#include "encoder/merge.h"

#include "support/temporary_directory.h"

#include <algorithm>
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
    /// Returns a post with part `number` and the data `data`.
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
    EXPECT_EQ(result->left_out[0].reason, "Part 1 was found before");
    EXPECT_EQ(result->left_out[1].path, path("far"));
    EXPECT_EQ(result->left_out[1].reason, "Part 9 has no place in the series");
    EXPECT_FALSE(result->left_out[1].unreadable);
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

TEST_F(Merge, PartsOfBothLineEndsBecomeOneTextOfCrLf) {
    const std::vector<std::string> data = {"A=yA\r\nAAA", "B\r\n\r\nBB=", "CC"};
    std::string joined = head_ + data[0] + "\r\n" + data[1] + "\r\n" + data[2] + "\r\n=yend size=3 part=3\r\nbye\r\n";
    for (unsigned unix_parts = 0; unix_parts < 8; ++unix_parts) {
        std::vector<std::string> paths;
        for (unsigned i = 0; i < 3; ++i) {
            std::string text = post(static_cast<int>(i) + 1, data[i], "", "bye\r\n");
            if ((unix_parts >> i & 1U) != 0) std::erase(text, '\r');
            paths.push_back(put("part" + std::to_string(i), text));
        }
        // If all agree, every byte stays the same.
        if (unix_parts == 7) std::erase(joined, '\r');
        ASSERT_TRUE(merge_yenc(paths, path("merged.txt")));
        EXPECT_EQ(merged(), joined) << unix_parts;
    }
}

TEST_F(Merge, LineEndsOfAFileThatDropsOutDoNotCount) {
    std::string unix_one = post(1, "AAA");
    std::string unix_two = post(2, "BBB");
    std::erase(unix_one, '\r');
    std::erase(unix_two, '\r');
    ASSERT_TRUE(
        merge_yenc(std::vector{put("a", unix_one), put("z", post(9, "ZZZ")), put("b", unix_two)}, path("merged.txt")));
    EXPECT_THAT(merged(), ::testing::Not(HasSubstr("\r")));
}

TEST_F(Merge, ProgressTellsEachPieceAndCanStopIt) {
    const std::string large(3U << 20U, 'x');
    const std::vector<std::string> paths = {put("b", post(2, large)), put("a", post(1, "AAA"))};
    put("merged.txt", "older");
    std::vector<std::size_t> pieces;
    double furthest = 0;
    const auto watch = [&](const MergeProgress& at) {
        if (at.of_piece == 0 && (pieces.empty() || pieces.back() != at.index)) pieces.push_back(at.index);
        furthest = std::max(furthest, at.of_piece);
        EXPECT_EQ(at.count, 2U);
        return true;
    };
    const auto stop_inside = [](const MergeProgress& at) { return at.of_piece < 0.5; };
    for (const auto merge : {merge_yenc, merge_text}) {
        const auto stopped = merge(paths, path("merged.txt"), stop_inside, files::OnCollision::replace);
        ASSERT_FALSE(stopped);
        EXPECT_EQ(stopped.error().code, ErrorCode::cancelled);
        EXPECT_EQ(merged(), "older");
        EXPECT_THAT(dir_.names(), ElementsAre("a", "b", "merged.txt"));
    }
    for (const auto merge : {merge_yenc, merge_text}) {
        pieces.clear();
        furthest = 0;
        ASSERT_TRUE(merge(paths, path("merged.txt"), watch, files::OnCollision::replace));
        EXPECT_THAT(pieces, ElementsAre(0U, 1U));
        EXPECT_GT(furthest, 0.5);
        EXPECT_LE(furthest, 1);
    }
}

TEST_F(Merge, AFileThatChangesMeanwhileFailsTheMerge) {
    const std::vector<std::string> paths = {put("a", post(1, "AAA")), put("b", post(2, "BBB"))};
    put("merged.txt", "older");
    const auto cut_b = [&](const MergeProgress&) {
        put("b", "cut");
        return true;
    };
    const auto result = merge_yenc(paths, path("merged.txt"), cut_b);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().text, "b changed while it was read");
    EXPECT_EQ(merged(), "older");
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
    EXPECT_TRUE(result->left_out[0].unreadable);
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

TEST(FindParts, APartEndsBehindItsOwnPartLineWhereAnotherFollowsAtOnce) {
    const std::string head = "=ybegin part=1 name=q\r\n=ypart begin=1 end=2\r\n";
    const auto parts = find_parts(head + "=ypart begin=3 end=4\r\nab\r\n", 0);
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[0].end, head.size());
    EXPECT_EQ(parts[1].head, head.size());
}

}  // namespace
}  // namespace quill::encoder
