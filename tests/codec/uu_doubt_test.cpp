#include "codec/encoded.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace quill::codec {
namespace {

using tests::noise;
using tests::scan_and_decode;
using tests::ScannedFile;
using tests::text_of;
using tests::uu_lines;
using Lines = std::vector<std::string>;

const std::string original = noise(920);

/// Returns a post of `lines`, with the end of the data.
std::string post_of(const Lines& lines, const std::string& last = "`\n") {
    return "begin 644 x\n" + text_of(lines) + last + "end\n";
}

/// Returns the sum of a line's values, as some encoders write it at its end.
char check_of(const std::string& line) {
    unsigned sum = 0;
    for (const char c : line.substr(1)) sum += static_cast<unsigned>(uu::value_of(uu::Alphabet::uu, c));
    return uu::character_for(uu::Alphabet::uu, sum % 64);
}

Lines checked(Lines lines) {
    for (std::string& line : lines) line.push_back(check_of(line));
    return lines;
}

/// Returns the lines with '`' written as a blank, or lost at their ends.
Lines blanked(Lines lines, bool lost) {
    for (std::string& line : lines) {
        for (char& c : line) c = c == '`' ? ' ' : c;
        if (lost) line.resize(line.find_last_not_of(' ') + 1);
    }
    return lines;
}

struct Doubt {
    std::string what;
    std::function<void(Lines&)> spoil;
    std::string kind;
};

TEST(UuDoubt, WhatIsSpoiltBetweenLinesOfDataIsNeverWhole) {
    const std::vector<Doubt> doubts = {
        {"a word", [](Lines& l) { l.insert(l.begin() + 5, "Hello"); }, "foreign-line"},
        {"a sentence", [](Lines& l) { l.insert(l.begin() + 5, "HELLO THERE"); }, "foreign-line"},
        {"a line cut", [](Lines& l) { l[5].resize(50); }, "short-line"},
        {"a line broken in two", [](Lines& l) { l.insert(l.begin() + 6, l[5].substr(30)), l[5].resize(30); },
         "short-line"},
        {"a character more", [](Lines& l) { l[5].insert(20, "A"); }, "bad-check"},
        {"a short line in the middle", [](Lines& l) { std::rotate(l.end() - 3, l.end() - 1, l.end()); },
         "uneven-lines"},
        {"the last line on the one before it", [](Lines& l) { l[l.size() - 2] += l.back(), l.pop_back(); },
         "bad-length"},
        {"quoted lines",
         [](Lines& l) {
             for (std::size_t i = 5; i < 12; ++i) l[i].insert(0, "> ");
         },
         "unnumbered-parts"},
    };
    for (const Doubt& doubt : doubts) {
        Lines lines = uu_lines(original);
        doubt.spoil(lines);
        const std::vector<ScannedFile> files = scan_and_decode(post_of(lines));
        ASSERT_EQ(files.size(), 1U) << doubt.what;
        EXPECT_EQ(name_of(files[0].outcome.verdict), "damaged") << doubt.what;
        EXPECT_TRUE(files[0].has_problem(doubt.kind)) << doubt.what;
    }
}

TEST(UuDoubt, CheckCharactersAreCompared) {
    const Lines lines = checked(uu_lines(original));
    ScannedFile file = scan_and_decode(post_of(lines)).at(0);
    EXPECT_EQ(file.bytes, original);
    EXPECT_EQ(file.outcome.verdict, Verdict::whole);
    const std::vector<Doubt> doubts = {
        {"another character", [](Lines& l) { l[5][9] = l[5][9] == 'A' ? 'B' : 'A'; }, "bad-check"},
        {"one lost", [](Lines& l) { l[5].erase(9, 1); }, "bad-check"},
        {"a foreign one", [](Lines& l) { l[5][9] = '~'; }, "bad-character"},
        {"two lines in one", [](Lines& l) { l[5] += l[6], l.erase(l.begin() + 6); }, "bad-length"},
    };
    for (const Doubt& doubt : doubts) {
        Lines spoilt = lines;
        doubt.spoil(spoilt);
        file = scan_and_decode(post_of(spoilt)).at(0);
        EXPECT_EQ(name_of(file.outcome.verdict), "damaged") << doubt.what;
        EXPECT_TRUE(file.has_problem(doubt.kind)) << doubt.what;
    }
}

TEST(UuDoubt, ABodyThatBreaksItsOwnLawIsNeverWhole) {
    const std::string zeros = noise(100) + std::string(200, '\0') + noise(100, 2) + std::string(20, '\0');
    const std::vector<Doubt> doubts = {
        {"a row cut by a character, and zeros as graves", [](Lines& l) { l[2].resize(60); }, "short-line"},
        {"a blank for a character, and zeros as graves", [](Lines& l) { l[1][30] = ' '; }, "bad-character"},
        {"a last row that lacks a character before its padding",
         [](Lines& l) { l.back() = "#" + l.back().substr(1, 1) + "A`"; }, "short-line"},
        {"a last row with a character more", [](Lines& l) { l.back() += 'A'; }, "bad-check"},
        {"surplus characters that change",
         [](Lines& l) {
             for (std::size_t i = 0; i < l.size(); ++i) l[i] += static_cast<char>('a' + i);
         },
         "bad-check"},
        {"a check character lost, and zeros as graves",
         [](Lines& l) {
             l = checked(l);
             for (std::string& line : l) {
                 if (line.ends_with("``")) {
                     line.pop_back();
                     break;
                 }
             }
         },
         "bad-check"},
        {"the row of length 0 before the last", [](Lines& l) { l.insert(l.end() - 1, "`"); }, "doubtful-end"},
    };
    for (const Doubt& doubt : doubts) {
        Lines lines = uu_lines(zeros);
        doubt.spoil(lines);
        const ScannedFile file = scan_and_decode(post_of(lines, doubt.kind == "doubtful-end" ? "" : "`\n")).at(0);
        EXPECT_EQ(name_of(file.outcome.verdict), "damaged") << doubt.what;
        EXPECT_TRUE(file.has_problem(doubt.kind)) << doubt.what;
    }
}

TEST(UuDoubt, WhatTransportsAddToTheEndsOfRowsIsNoDoubt) {
    for (const std::string& added :
         {std::string(" "), std::string("\t\t"), std::string(6, ' '), std::string(1, '\0')}) {
        for (Lines lines : {uu_lines(original), checked(uu_lines(original))}) {
            for (std::string& line : lines) line += added;
            const std::vector<ScannedFile> files = scan_and_decode(post_of(lines));
            ASSERT_EQ(files.size(), 1U) << testing::PrintToString(added);
            const ScannedFile& file = files[0];
            EXPECT_EQ(file.bytes, original);
            EXPECT_EQ(file.outcome.verdict, Verdict::whole);
        }
    }
}

TEST(UuDoubt, BlanksThatWereLostAreOnlyPutBackWhereTheyCanHaveBeen) {
    const std::string zeros = noise(100) + std::string(200, '\0') + noise(100, 2) + std::string(20, '\0');
    ScannedFile file = scan_and_decode(post_of(blanked(uu_lines(zeros), true), "\n")).at(0);
    EXPECT_EQ(file.bytes, zeros);
    EXPECT_EQ(file.outcome.verdict, Verdict::whole);
    Lines cut = blanked(uu_lines(original), false);
    cut[5].resize(50);
    file = scan_and_decode(post_of(cut, " \n")).at(0);
    EXPECT_EQ(file.outcome.verdict, Verdict::damaged) << "the line of length 0 has kept its blank";
    file = scan_and_decode(post_of(cut, "\n")).at(0);
    EXPECT_EQ(file.outcome.verdict, Verdict::damaged) << "more is missing than chance gives";
}

TEST(UuDoubt, LinesBehindAnEndAreDoubted) {
    for (const std::string end : {"`", "end"}) {
        Lines lines = uu_lines(original);
        lines.insert(lines.begin() + 5, end);
        const std::vector<ScannedFile> files = scan_and_decode(post_of(lines));
        ASSERT_FALSE(files.empty()) << end;
        for (const ScannedFile& file : files) EXPECT_GE(file.outcome.verdict, Verdict::damaged) << end;
    }
    const std::string post = post_of(uu_lines(original));
    for (const ScannedFile& file : scan_and_decode(post + post)) EXPECT_EQ(file.outcome.verdict, Verdict::whole);
}

TEST(UuDoubt, ALastLineThatIsFilledUpIsWhole) {
    Lines lines = uu_lines(original);
    lines.back().resize(61, '`');
    const ScannedFile file = scan_and_decode(post_of(lines)).at(0);
    EXPECT_EQ(file.bytes, original);
    EXPECT_EQ(file.outcome.verdict, Verdict::whole);
}

TEST(UuDoubt, NoLineIsLeftOutForTheBlanksThatItLost) {
    const std::string runs = noise(45) + std::string(58, '\0') + noise(3) + std::string(40, '\0') + noise(7) + '\0';
    for (const std::string& begin : {noise(200), runs + noise(60), std::string(9, 'x') + std::string(191, '\0')}) {
        for (std::size_t size = 1; size <= begin.size(); ++size) {
            const std::string bytes = begin.substr(0, size);
            const auto files = scan_and_decode(post_of(blanked(uu_lines(bytes), true), "\n"));
            ASSERT_EQ(files.size(), 1U) << size;
            EXPECT_EQ(files[0].bytes, bytes) << size;
        }
    }
    const std::string zeros(2000, '\0');
    const ScannedFile file = scan_and_decode(post_of(blanked(uu_lines(zeros), true), "\n")).at(0);
    EXPECT_EQ(file.bytes, zeros);
    EXPECT_EQ(file.outcome.verdict, Verdict::whole);
    const std::string one_byte = scan_and_decode(post_of({"!?"}, "\n")).at(0).bytes;
    EXPECT_EQ(one_byte, "\x7C");
}

TEST(UuDoubt, ADotThatWasAddedComesOff) {
    Lines lines = uu_lines(noise(14));
    lines[0].insert(0, ".");
    ASSERT_EQ(lines[0].substr(0, 2), "..");
    const ScannedFile file = scan_and_decode(post_of(lines)).at(0);
    EXPECT_EQ(file.bytes, noise(14));
    EXPECT_TRUE(file.has_problem("dots-added"));
}

TEST(UuDoubt, AStatedSumSettlesADoubt) {
    const std::string text = "begin 644 cat\n!0P``\n\"870`\n!0P``\n`\nend\n";
    ScannedFile file = scan_and_decode(text).at(0);
    EXPECT_EQ(file.bytes, "CatC");
    EXPECT_EQ(file.outcome.verdict, Verdict::damaged);
    file = scan_and_decode(text + "sum -r/size 41117/4 entire input file\n").at(0);
    EXPECT_EQ(file.outcome.verdict, Verdict::verified);
    EXPECT_TRUE(file.has_problem("uneven-lines"));
}

}  // namespace
}  // namespace quill::codec
