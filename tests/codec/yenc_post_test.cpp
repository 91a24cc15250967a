#include "codec/yenc/yenc_post.h"

#include <gtest/gtest.h>

#include <string>

namespace quill::codec::yenc {
namespace {

std::string decoded(std::string_view text, const Post& post, bool dotted = false) {
    std::string out;
    decode_data(text, post, dotted, [&](std::string_view bytes, std::size_t) {
        out += bytes;
        return true;
    });
    return out;
}

TEST(YencLines, AHeaderIsReadWhateverTheOrderOfItsFields) {
    const auto begin = parse_begin("=ybegin part=3 line=128 total=7 size=1000 name= a = \"b\" size=1.bin  ");
    ASSERT_TRUE(begin);
    EXPECT_EQ(begin->part, 3U);
    EXPECT_EQ(begin->total, 7U);
    EXPECT_EQ(begin->line, 128U);
    EXPECT_EQ(begin->size, 1000U);
    EXPECT_EQ(begin->name, "a = \"b\" size=1.bin");
    EXPECT_EQ(parse_begin("=ybegin size=5 name=\"two words\"")->name, "two words");
}

TEST(YencLines, NumbersThatAreNoneAreAbsent) {
    for (const char* size : {"-1000", "1x", "", "0x10", "99999999999999999999999", "+5"}) {
        const auto begin = parse_begin(std::string("=ybegin line=128 size=") + size + " name=a");
        ASSERT_TRUE(begin) << size;
        EXPECT_FALSE(begin->size) << size;
    }
}

TEST(YencLines, OtherLinesAreNoHeaders) {
    for (const char* line : {"=ybegin", "=ybegi size=1", "=ybeginx size=1", "=YBEGIN size=1", "= ybegin size=1",
                             "=ybegin nothing of use", "=ypart begin=1 end=2"}) {
        EXPECT_FALSE(parse_begin(line)) << line;
    }
    EXPECT_FALSE(parse_part("=yparted begin=1"));
    EXPECT_FALSE(parse_end("=yendless"));
    EXPECT_TRUE(parse_end("=yend"));
}

TEST(YencLines, ACrcMayHaveFewerDigitsOrTheSignOf64Bits) {
    EXPECT_EQ(parse_crc("1f"), 0x1FU);
    EXPECT_EQ(parse_crc("DED29F4F"), 0xDED29F4FU);
    EXPECT_EQ(parse_crc("ffffffffded29f4f"), 0xDED29F4FU);
    EXPECT_EQ(parse_crc("000000000ded29f4"), 0x0DED29F4U);
    for (const char* none : {"", "GGGGGGGG", "123456789", "123456789ABCDEF0123456789ABCDEF0", "ff00ffffded29f4f"}) {
        EXPECT_FALSE(parse_crc(none)) << none;
    }
    const auto end = parse_end("=yend size=5 part=2 pcrc32=abc crc32=xyz");
    ASSERT_TRUE(end);
    EXPECT_EQ(end->pcrc32, 0xABCU);
    EXPECT_FALSE(end->crc32);
    EXPECT_TRUE(end->unreadable_crc);
}

TEST(YencPost, LinesMayEndInAnyWay) {
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        const std::string text = "=ybegin part=1 total=1 line=2 size=3 name=a" + end + "=ypart begin=1 end=3" + end +
                                 "kl" + end + "m" + end + "=yend size=3 part=1 pcrc32=a3830348" + end;
        const auto post = read_post(text);
        ASSERT_TRUE(post && post->end);
        EXPECT_EQ(decoded(text, *post), "ABC");
        EXPECT_TRUE(agrees(*post, *decode_data(text, *post, false)));
    }
}

TEST(YencPost, WithoutATrailerTheDataGoToItsEndButNotBeyondTheStatedSize) {
    const std::string text = "=ybegin line=128 size=2 name=a\r\nkl\r\nmn\r\n";
    const auto post = read_post(text);
    ASSERT_TRUE(post);
    EXPECT_FALSE(post->end);
    EXPECT_EQ(decoded(text, *post), "AB");
    EXPECT_FALSE(verify(*post, *decode_data(text, *post, false)).vouched_for);
}

TEST(YencPost, AnUnknownKeywordLineAmongTheDataIsPassedOver) {
    const std::string text = "=ybegin line=128 size=2 name=a\r\nk\r\n=yfuture x=1\r\nl\r\n=yend size=2\r\n";
    EXPECT_EQ(decoded(text, *read_post(text)), "AB");
}

TEST(YencPost, PiecesFitTogetherOverALongText) {
    std::string text = "=ybegin line=128 size=0 name=a\r\n";
    std::string expected;
    while (expected.size() < 600'000) {
        const std::size_t n = expected.size();
        text += n % 3 == 0 ? "=}" : "..";
        expected += n % 3 == 0 ? "\x13" : "\x04\x04";
        if (n % 64 < 2) text += "\r\n";
    }
    text += "\r\n=yend size=1\r\n";
    EXPECT_TRUE(decoded(text, *read_post(text)) == expected);
}

TEST(YencPost, DotsLookAddedOnlyWhereEachDotHasTwo) {
    const auto stuffed = [](const std::string& lines) {
        const std::string text = "=ybegin line=128 size=2 name=a\r\n" + lines + "\r\n=yend size=2\r\n";
        return dots_look_added(text, *read_post(text));
    };
    EXPECT_TRUE(stuffed("..a\r\nb"));
    EXPECT_FALSE(stuffed("a..\r\nb"));
    EXPECT_FALSE(stuffed("..a\r\n.b"));
    EXPECT_FALSE(stuffed("..a\r\n."));
}

TEST(YencVerify, ACrcThatAgreesOutweighsAWrongSize) {
    const std::string text = "=ybegin line=128 size=4 name=a\r\nklm\r\n=yend size=3 crc32=a3830348\r\n";
    const auto post = read_post(text);
    const Verification found = verify(*post, *decode_data(text, *post, false));
    EXPECT_TRUE(found.vouched_for);
    ASSERT_EQ(found.problems.size(), 1U);
    EXPECT_EQ(word_of(found.problems[0]), "size-differs");
    EXPECT_EQ(grade_of(found.problems[0]), Grade::repaired);
    EXPECT_EQ(found.problems[0].at_input, text.find("=yend"));
}

TEST(YencVerify, PostsPutTogetherAreHeldAgainstTheSizeAndCrcOfTheFile) {
    const std::string text =
        "=ybegin part=1 total=2 line=128 size=3 name=a\r\n=ypart begin=1 end=2\r\nkl\r\nm\r\n"
        "=yend size=1 part=2 pcrc32=00000000 crc32=a3830348\r\n";
    const auto post = read_post(text);
    ASSERT_TRUE(post);
    EXPECT_TRUE(post->is_merged());
    const Verification found = verify(*post, *decode_data(text, *post, false));
    EXPECT_TRUE(found.vouched_for);
    EXPECT_TRUE(found.problems.empty());
}

}  // namespace
}  // namespace quill::codec::yenc
