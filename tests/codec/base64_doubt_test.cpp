#include "codec/encoded.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace quill::codec {
namespace {

using tests::lines_of;
using tests::noise;
using tests::scan_and_decode;
using tests::ScannedFile;
using tests::text_of;
using Lines = std::vector<std::string>;

const std::string original = noise(704);  // twelve full rows, and one of 28 characters

struct Doubt {
    std::string what;
    std::function<void(Lines&)> spoil;
    bool exact = false;  ///< the bytes are recovered, though nothing confirms them
};

const std::vector<Doubt>& doubts() {
    static const std::vector<Doubt> all = {
        {"a character lost", [](Lines& l) { l[6].erase(9, 1); }},
        {"a row cut", [](Lines& l) { l[6].resize(60); }},
        {"words of the alphabet", [](Lines& l) { l.insert(l.begin() + 6, "Sent from my phone"); }},
        {"other words", [](Lines& l) { l.insert(l.begin() + 6, "[Message clipped]"); }, true},
        {"a footer before the last row", [](Lines& l) { l.insert(l.end() - 1, "[Message clipped]"); }},
        {"quoted to the end",
         [](Lines& l) {
             for (std::size_t i = 7; i < l.size(); ++i) l[i].insert(0, "> ");
         }},
        {"quoted rows",
         [](Lines& l) {
             for (std::size_t i = 4; i < 8; ++i) l[i].insert(0, "> ");
         }},
        {"a foreign character", [](Lines& l) { l[6][9] = '~'; }},
        {"padding inside", [](Lines& l) { l.insert(l.begin() + 6, "QUI="); }},
        {"padding near the end of a row", [](Lines& l) { l[6][71] = '='; }},
        {"padding and text", [](Lines& l) { l[6].replace(71, 5, "=\n--"); }},
        {"a character of the first row lost", [](Lines& l) { l[0].erase(9, 1); }},
        {"a foreign character in the third row", [](Lines& l) { l[2][9] = '~'; }},
        {"a blank in the second row", [](Lines& l) { l[1][9] = ' '; }},
        {"another format's line", [](Lines& l) { l.insert(l.begin() + 6, "=ybegin"); }},
    };
    return all;
}

void expect_doubt(const std::string& head, const std::string& tail) {
    ScannedFile good = scan_and_decode(head + tests::base64(original) + "\n" + tail).at(0);
    EXPECT_EQ(good.bytes, original);
    EXPECT_EQ(good.outcome.verdict, Verdict::whole);
    for (const Doubt& doubt : doubts()) {
        Lines lines = lines_of(tests::base64(original));
        doubt.spoil(lines);
        const auto files = scan_and_decode(head + text_of(lines) + tail);
        ASSERT_FALSE(files.empty()) << doubt.what;
        for (const ScannedFile& file : files) EXPECT_GE(file.outcome.verdict, Verdict::damaged) << doubt.what;
        if (doubt.exact) {
            EXPECT_EQ(files[0].bytes, original) << doubt.what;
        }
    }
}

TEST(Base64Doubt, ABodyWhoseRowsAreSpoiltIsNotWhole) {
    expect_doubt("Content-Type: x/y; name=a\nContent-Transfer-Encoding: base64\n\n", "");
}

TEST(Base64Doubt, RowsWithoutAHeaderThatAreSpoiltAreNotWhole) {
    expect_doubt("Hello\n\n", "");
    expect_doubt("\xEF\xBB\xBF", "");
}

/// A row of zeros is all 'A', so it could also be hexadecimal digits.
TEST(Base64Doubt, ZerosBeforeRowsWithoutAHeaderAreNotLostInSilence) {
    for (const std::size_t zeros : {57U, 300U, 1'200U, 6'000U}) {
        const std::string data = std::string(zeros, '\0') + original;
        const ScannedFile file = scan_and_decode(tests::base64(data) + "\n").at(0);
        EXPECT_EQ(file.bytes == data, file.outcome.verdict == Verdict::whole) << zeros;
        EXPECT_TRUE(file.bytes == data || zeros > 1'500) << zeros;
    }
}

TEST(Base64Doubt, RowsBehindABeginLineThatAreSpoiltAreNotWhole) {
    expect_doubt("begin-base64 644 a\n", "====\n");
}

TEST(Base64Doubt, RowsWithoutAHeaderNeedALastOne) {
    const Lines lines = lines_of(tests::base64(original));
    const auto cut = scan_and_decode(text_of({lines.begin(), lines.end() - 1}));
    ASSERT_EQ(cut.size(), 1U);
    EXPECT_EQ(cut[0].outcome.verdict, Verdict::incomplete);
    Lines spaced = lines;
    spaced.insert(spaced.begin() + 6, "");
    const auto gap = scan_and_decode(text_of(spaced));
    ASSERT_EQ(gap.size(), 1U);
    EXPECT_EQ(gap[0].bytes, original);
    const auto two = scan_and_decode(text_of(lines) + "\n" + text_of(lines));
    ASSERT_EQ(two.size(), 2U) << "an empty line behind a last row";
    for (const ScannedFile& file : two) EXPECT_EQ(file.bytes, original);
}

TEST(Base64Doubt, TextThatWasBrokenAgainIsWhole) {
    Lines lines;
    for (const std::string& row : lines_of(tests::base64(original))) {
        lines.push_back(row.substr(0, 60));
        if (row.size() > 60) lines.push_back(row.substr(60));
    }
    const auto files =
        scan_and_decode("Content-Type: x/y; name=a\nContent-Transfer-Encoding: base64\n\n" + text_of(lines));
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].bytes, original);
    EXPECT_EQ(files[0].outcome.verdict, Verdict::whole);
}

TEST(Base64Doubt, TheRowBeforeABoundaryIsCheckedToo) {
    const Lines rows = lines_of(tests::base64(original));
    const Lines table[] = {
        {rows[0], rows.back(), rows[1]},
        {rows[0], rows[1].substr(0, 40), rows[2]},
        {rows[0], "Page 2 of 5", rows[1]},
        {rows.back(), rows[0]},
    };
    for (const Lines& lines : table) {
        const auto files = scan_and_decode(
            "Content-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: x/y; name=a\n"
            "Content-Transfer-Encoding: base64\n\n" +
            text_of(lines) + "--b--\n");
        ASSERT_FALSE(files.empty());
        EXPECT_EQ(name_of(files[0].outcome.verdict), "damaged") << text_of(lines);
    }
}

TEST(Base64Doubt, RowsWithoutAHeaderThatFollowPiecesOfOthersLackTheirBeginning) {
    const Lines rows = lines_of(tests::base64(original));
    const std::string others = text_of({rows.begin() + 1, rows.end()});
    const struct {
        std::string before;
        bool whole;
    } table[] = {
        {"", true},
        {"Hello\n", true},
        {"HELLO\n", true},
        {"Some words\n", true},
        {rows[0].substr(0, 7) + "\n", false},
        {rows[0].substr(0, 40) + "\xE2\x82\xAC\xE2\x82\xAC" + rows[0].substr(40) + "\n", false},
        {rows[0] + "\n\n-- \nSent by phone\n\n", false},
        {rows[0] + "\n" + rows.back() + "\n\nAnd another:\n\n", true},
        {rows[0] + "\n\nFrom a@b.example Tue Mar  3 10:20:30 1998\nSubject: y\n\n", true},
    };
    for (const auto& row : table) {
        const auto files = scan_and_decode("Subject: x\n\n" + row.before + others);
        ASSERT_FALSE(files.empty());
        EXPECT_EQ(files.back().outcome.verdict == Verdict::whole, row.whole) << row.before;
    }
}

TEST(Base64Doubt, AFooterAfterTheLastRowIsNoDamage) {
    const std::string head = "Content-Type: image/gif; name=x.gif\nContent-Transfer-Encoding: base64\n\n";
    const std::string full_rows = original.substr(0, 57 * 12);
    for (const std::string footer : {"____________\nThe list of all\nhttp://a.example\n",
                                     "~~~~\n****\nSee a.example now\n", "\n=-=-=-=\n\nUnsubscribe at a@b.example\n"}) {
        const ScannedFile file = scan_and_decode(head + tests::base64(original) + "\n" + footer).at(0);
        EXPECT_EQ(file.bytes, original) << footer;
        EXPECT_EQ(name_of(file.outcome.verdict), "whole") << footer;
        const ScannedFile cut = scan_and_decode(head + tests::base64(full_rows) + "\n" + footer).at(0);
        EXPECT_EQ(cut.bytes, full_rows) << footer;
        EXPECT_TRUE(cut.has_problem("doubtful-end")) << footer;
    }
}

}  // namespace
}  // namespace quill::codec
