#include "codec/decode.h"

#include "codec/binhex.h"
#include "codec/checksum.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace quill::codec {
namespace {

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
    EXPECT_EQ(outcome.problems.front().kind, GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(Bodies, DamagedBase64,
                         testing::Values(
                             // One character replaced: its group alone is wrong, and nothing is shifted.
                             Damage{"QUJDREVGR0hJSktM\nQUJDRE*GR0hJSktM\nQUJD\n", "ABCDEFGHIJKLABCD@\x06GHIJKLABC",
                                    Verdict::damaged, "bad-character"},
                             Damage{"QUJDREVGR0hJSktM\n-- now (a word) from us --\nQUJD\n", "ABCDEFGHIJKLABC",
                                    Verdict::damaged, "foreign-line"},
                             Damage{"QUJDRE", "ABCD", Verdict::whole, "missing-padding"},
                             Damage{"QUJDR", "ABC", Verdict::incomplete, "cut-group"},
                             Damage{"QUI=\nYours, Ann\n", "AB", Verdict::whole, "text-after-data"},
                             Damage{"QUI=\nQUJDREVGR0hJSktMQUJDREVGR0hJSktM\n", "ABABCDEFGHIJKLABCDEFGHIJKL",
                                    Verdict::whole, "inner-padding"}));

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
    EXPECT_EQ(outcome.problems.back().kind, "more-problems");
    EXPECT_EQ(outcome.size, 12000U);
}

TEST(Problems, StandInTheOrderOfTheirPlaces) {
    const std::vector<ScannedFile> files = scan_and_decode("begin 644 a\n#0V%T\n#0v%T\n#0V%T\n`\n\nYours, Ann\n");
    ASSERT_EQ(files.size(), 1U);
    const std::vector<Problem>& problems = files[0].outcome.problems;
    ASSERT_EQ(problems.size(), 2U);
    EXPECT_EQ(problems[0].kind, "bad-character");
    EXPECT_EQ(problems[1].kind, "missing-end");
}

// BinHex, built here from the definition: header, forks and their CRCs, runs, six bits a character.

std::string with_crc(std::string bytes) {
    const std::uint16_t crc = crc16_binhex(0, bytes);
    bytes.push_back(static_cast<char>(crc >> 8U));
    bytes.push_back(static_cast<char>(crc & 0xFFU));
    return bytes;
}

std::string big_endian(std::size_t n) {
    return {'\0', '\0', static_cast<char>(n >> 8U & 0xFFU), static_cast<char>(n & 0xFFU)};
}

std::string hqx(const std::string& stream) {
    constexpr std::string_view alphabet = "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr";
    std::string out = ":";
    unsigned bits = 0, count = 0;
    for (const char c : stream) {
        bits = bits << 8U | static_cast<unsigned char>(c);
        for (count += 8; count >= 6; count -= 6) out.push_back(alphabet[bits >> (count - 6) & 63U]);
    }
    if (count > 0) out.push_back(alphabet[bits << (6 - count) & 63U]);
    return "(This file must be converted with BinHex 4.0)\n\n" + out + ":\n";
}

std::string binhex_of(const std::string& data, const std::string& resource) {
    const std::string header =
        std::string("\4a.sc\0TEXTttxt\0\0", 16) + big_endian(data.size()) + big_endian(resource.size());
    return with_crc(header) + with_crc(data) + with_crc(resource);
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
