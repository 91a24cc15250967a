#include "codec/recovery/part_label.h"

#include "codec/encoded.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace quill::codec {
namespace {

TEST(PartLabel, OfASubjectIsTheClearestPairOfNumbers) {
    const struct {
        const char* subject;
        PartLabel label;
    } table[] = {
        {"x.zip (2/5)", {"x.zip", 2, 5}},
        {"x.zip (2of5)", {"x.zip", 2, 5}},
        {"x.zip (Part 2 of 5)", {"x.zip", 2, 5}},
        {"x.zip #2/5", {"x.zip", 2, 5}},
        {"(2/5) x.zip", {"x.zip", 2, 5}},
        {"x.zip (2/5) posted 2/5/98", {"x.zip", 2, 5}},
        {"x.jpg 480/640 (02/05)", {"x.jpg 480/640", 2, 5}},
        {"x.jpg 10/10 [2/5]", {"x.jpg 10/10", 2, 5}},
        {"[1/1] - \"x.zip\" yEnc (2/5)", {"x.zip", 2, 5}},
        {"[1/3] \"album\" (2/5)", {"[1/3] \"album\"", 2, 5}},
        {"x.zip (2/5) [1/1]", {"x.zip", 2, 5}},
        {"Re: REPOST: x.zip (2/5)", {"x.zip", 2, 5}},
        {"x.zip - part 2", {"x.zip", 2, 0}},
        {"x.zip #2", {"x.zip", 2, 0}},
    };
    for (const auto& [subject, label] : table) {
        const auto found = label_of_subject(subject);
        ASSERT_TRUE(found) << subject;
        EXPECT_EQ(found->number, label.number) << subject;
        EXPECT_EQ(found->total, label.total) << subject;
        EXPECT_EQ(found->file, label.file) << subject;
    }
    for (const char* subject : {"Photos of 2/5/98", "2 offers", "1998", "part of 7", "#2 is best"}) {
        EXPECT_FALSE(label_of_subject(subject)) << subject;
    }
}

TEST(PartLabel, OfAPathIsItsTotalOrTheNumberAtItsEnd) {
    const struct {
        const char* path;
        std::uint32_t number, total, clear;
    } table[] = {
        {"d/x (2_5).txt", 2, 5, 2},    {"d/x_2of5.txt", 2, 5, 2}, {"d/x [2-5].txt", 2, 5, 2},
        {"d/x.zip.002", 2, 0, 2},      {"d/x-02.uue", 2, 0, 0},   {"d/11494.txt", 11494, 0, 0},
        {"d/2024-03-05.eml", 5, 0, 0}, {"(2_5)/x.txt", 0, 0, 0},  {"d/x_5of2.txt", 2, 0, 0},
    };
    for (const auto& [path, number, total, clear] : table) {
        const PartLabel label = label_of_path(path);
        EXPECT_EQ(label.number, number) << path;
        EXPECT_EQ(label.total, total) << path;
        EXPECT_EQ(part_of_path(path), clear) << path;
    }
    EXPECT_EQ(label_of_path("d/x (2_5).txt").file, label_of_path("d/x (3_5).txt").file);
    for (const char* copy : {"d/copy of x.002", "d/x (copy).002", "d/x - Copy.002"}) {
        EXPECT_EQ(label_of_path(copy), label_of_path("d/x.002")) << copy;
    }
}

/// Rows of 30 bytes, which only a number in the input's name announces in later parts.
TEST(PartLabel, OfAnInputAnnouncesItsRows) {
    const std::string bytes = tests::noise(600);
    std::string rows[2];
    for (std::size_t at = 0; at < bytes.size(); at += 30) {
        rows[at / 300] += tests::uu_lines(bytes.substr(at, 30)).front() + "\n";
    }
    const std::string first = "Subject: x\n\nbegin 644 x\n" + rows[0], second = "Subject: x\n\n" + rows[1] + "`\nend\n";
    const auto files = tests::scan_and_decode({first, second}, {"x_1of2.txt", "x_2of2.txt"});
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].bytes, bytes);
    const std::string part = "Content-Type: a/b; name=x\nContent-Transfer-Encoding: base64\n\n" + tests::base64(bytes);
    EXPECT_EQ(tests::scan_and_decode({part}, {"x.txt"}).at(0).outcome.verdict, Verdict::whole);
    EXPECT_EQ(tests::scan_and_decode({part}, {"x (2_2).txt"}).at(0).outcome.verdict, Verdict::incomplete);
}

/// Two pieces of a message and a post between them, in one text without "From " lines.
TEST(PartLabel, OfPiecesOfAMessageCountsWhereverTheyBegin) {
    const std::string bytes = tests::noise(400), rows = tests::base64(bytes);
    const auto piece = [](int number) {
        return "From: a@b\nSubject: x\nContent-Type: message/partial; id=q; total=2; number=" + std::to_string(number) +
               "\n\n";
    };
    const std::string first =
        piece(1) + "Content-Type: a/b; name=x\nContent-Transfer-Encoding: base64\n\n" + rows.substr(0, 4 * 77);
    const std::string second = piece(2) + rows.substr(4 * 77) + "\n";
    const std::string words = "From: c@d\nDate: Tue, 3 Mar 1998 10:20:30 +0000\nSubject: y\n\nSome words.\n";
    const std::string rule = "==============================\n";
    for (const std::string& text :
         {rule + second + rule + words + rule + first, words + "\n" + second + "\n" + first}) {
        std::vector<tests::ScannedFile> files = tests::scan_and_decode(text);
        std::erase_if(files, [](const tests::ScannedFile& file) { return file.attachment.message_text; });
        ASSERT_EQ(files.size(), 1U) << text;
        EXPECT_EQ(files[0].bytes, bytes) << text;
        EXPECT_EQ(name_of(files[0].outcome.verdict), "whole") << text;
    }
}

}  // namespace
}  // namespace quill::codec
