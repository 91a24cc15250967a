#include "codec/recovery/decode.h"

#include "codec/hqx.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace quill::codec {
namespace {

using tests::binhex_of;
using tests::hqx;
using tests::scan_and_decode;
using tests::ScannedFile;

struct Damage {
    std::string_view body;
    std::string_view bytes;
    Verdict verdict;
    std::string_view kind;
};

class DamagedBase64 : public testing::TestWithParam<Damage> {};

TEST_P(DamagedBase64, IsRecoveredAndNeverCalledRight) {
    Attachment attachment;
    attachment.format = Format::base64;
    attachment.body = {{0, GetParam().body.size(), 0}};
    const std::array inputs = {GetParam().body};
    std::string bytes;
    const Outcome outcome = decode(attachment, inputs, [&](std::string_view piece) {
        bytes += piece;
        return true;
    });
    EXPECT_EQ(bytes, GetParam().bytes) << GetParam().body;
    EXPECT_EQ(name_of(outcome.verdict), name_of(GetParam().verdict)) << GetParam().body;
    ASSERT_FALSE(outcome.problems.empty());
    EXPECT_EQ(word_of(outcome.problems.front()), GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(Bodies, DamagedBase64,
                         testing::Values(
                             // One character replaced: its group alone is wrong, and nothing is shifted.
                             Damage{"QUJDREVGR0hJSktM\nQUJDRE*GR0hJSktM\nQUJD\n", "ABCDEFGHIJKLABCD@\x06GHIJKLABC",
                                    Verdict::damaged, "bad-character"},
                             Damage{"QUJDREVGR0hJSktM\n-- now (a word) from us --\nQUJD\n", "ABCDEFGHIJKLABC",
                                    Verdict::damaged, "foreign-line"},
                             Damage{"QUJDRE", "ABCD", Verdict::damaged, "missing-padding"},
                             Damage{"QUJDR", "ABC", Verdict::incomplete, "cut-group"},
                             Damage{"QUI=\nYours, Ann\n", "AB", Verdict::whole, "text-after-data"},
                             Damage{"QUI=\nQUJDREVGR0hJSktMQUJDREVGR0hJSktM\n", "ABABCDEFGHIJKLABCDEFGHIJKL",
                                    Verdict::damaged, "inner-padding"},
                             // A short piece after padding may be data, a word is not.
                             Damage{"QUI=\nQUJDREVGR0hJ\n", "ABABCDEFGHI", Verdict::damaged, "doubtful-row"},
                             // Lost characters show in the padding, and in the length of a row.
                             Damage{"QUJDREVGR0hJSktM\nQUJDREVGR0hSktM\nQUI=\n", "ABCDEFGHIJKLABCDEFGHR\x92\xD3\x10P",
                                    Verdict::damaged, "bad-padding"},
                             Damage{"QUJDREVGR0hJSktM\nQUJDREVG\nQUJDREVGR0hJSktM\nQUI=\n",
                                    "ABCDEFGHIJKLABCDEFABCDEFGHIJKLAB", Verdict::damaged, "uneven-lines"}));

TEST(DamagedUu, IsRecoveredAndNeverCalledRight) {
    const std::string line = "#0V%T\n";
    const std::vector<ScannedFile> files =
        scan_and_decode("begin 644 a\n" + line + "#0v%T\n" + line + "*0V%T\n" + line + "`\nend\n");
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].outcome.verdict, Verdict::damaged);
    EXPECT_EQ(files[0].bytes.substr(0, 3), "Cat");
    EXPECT_EQ(files[0].bytes.substr(files[0].bytes.size() - 3), "Cat");
}

TEST(Problems, AreKeptUpToTheirLimitAndCountedBeyond) {
    std::string body;
    for (int i = 0; i < 1000; ++i) body += "QUJDREVGR0hJSkt*\n";
    Attachment attachment;
    attachment.format = Format::base64;
    attachment.body = {{0, body.size(), 0}};
    const std::array inputs = {std::string_view(body)};
    const Outcome outcome = decode(attachment, inputs, [](std::string_view) { return true; });
    EXPECT_EQ(outcome.problems.size(), most_problems + 1);
    EXPECT_EQ(word_of(outcome.problems.back()), "more-problems");
    EXPECT_EQ(outcome.size, 12000U);
}

TEST(Problems, StandInTheOrderOfTheirPlaces) {
    const std::vector<ScannedFile> files = scan_and_decode("begin 644 a\n#0V%T\n#0v%T\n#0V%T\n`\n\nYours, Ann\n");
    ASSERT_EQ(files.size(), 1U);
    const std::vector<Problem>& problems = files[0].outcome.problems;
    ASSERT_EQ(problems.size(), 2U);
    EXPECT_EQ(word_of(problems[0]), "bad-character");
    EXPECT_EQ(word_of(problems[1]), "missing-end");
}

TEST(BinHex, GivesBothForksVerified) {
    const std::vector<ScannedFile> files = scan_and_decode("text before\n" + hqx(binhex_of("data fork", "rsrc")));
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].attachment.name, "a.sc");
    EXPECT_EQ(files[0].bytes, "data fork");
    EXPECT_EQ(files[0].outcome.verdict, Verdict::verified);
    EXPECT_TRUE(files[1].attachment.resource_fork);
    EXPECT_EQ(files[1].attachment.name, "a.sc.rsrc");
    EXPECT_EQ(files[1].bytes, "rsrc");
    EXPECT_EQ(files[1].outcome.verdict, Verdict::verified);
}

TEST(BinHex, LeavesOutAnEmptyResourceFork) {
    EXPECT_EQ(scan_and_decode(hqx(binhex_of("data fork", ""))).size(), 1U);
}

TEST(BinHex, SaysWhereAChecksumIsWrongOrTheEndIsMissing) {
    std::string stream = binhex_of("data fork", "");
    stream[30] ^= 1;
    const std::vector<ScannedFile> wrong = scan_and_decode(hqx(stream));
    ASSERT_EQ(wrong.size(), 1U);
    EXPECT_EQ(wrong[0].outcome.verdict, Verdict::damaged);
    EXPECT_TRUE(wrong[0].has_problem("bad-crc"));
    const std::vector<ScannedFile> cut = scan_and_decode(hqx(binhex_of("data fork", "").substr(0, 30)));
    ASSERT_EQ(cut.size(), 1U);
    EXPECT_EQ(cut[0].outcome.verdict, Verdict::incomplete);
    EXPECT_EQ(cut[0].bytes, "data");
}

}  // namespace
}  // namespace quill::codec
