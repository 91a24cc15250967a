#include "codec/encoded.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace quill::codec {
namespace {

using tests::noise;
using tests::scan_and_decode;
using tests::ScannedFile;
using tests::uu_lines;

/// Returns the parts of a file of 920 bytes in three posts; `name` is the subject before the numbers.
std::vector<std::string> parts_of(const std::string& bytes, const std::string& name) {
    const std::vector<std::string> lines = uu_lines(bytes);
    std::vector<std::string> out;
    for (std::size_t part = 0; part < 3; ++part) {
        std::string text = "From: a@b\nSubject: " + name + " (" + std::to_string(part + 1) + "/3)\n\n";
        if (part == 0) text += "begin 644 " + name + "\n";
        for (std::size_t i = part * 7; i < std::min(part * 7 + 7, lines.size()); ++i) text += lines[i] + "\n";
        if (part == 2) text += "`\nend\n";
        out.push_back(text);
    }
    return out;
}

std::vector<ScannedFile> decoded(const std::vector<std::string>& texts) {
    auto files = scan_and_decode({texts.begin(), texts.end()}, std::vector<std::string>(texts.size(), "in"));
    std::erase_if(files, [](const ScannedFile& file) { return file.attachment.message_text; });
    return files;
}

class PartCopies : public testing::Test {
  protected:
    const std::string original = noise(920);
    std::vector<std::string> parts = parts_of(original, "x.bin");

    /// Decodes the parts with `copy` of the second one, before it and after it.
    void expect_with(const std::string& copy, Verdict verdict, std::string_view kind) {
        for (const bool first : {false, true}) {
            const auto files = decoded(first ? std::vector{parts[0], copy, parts[1], parts[2]}
                                             : std::vector{parts[0], parts[1], copy, parts[2]});
            ASSERT_FALSE(files.empty());
            EXPECT_EQ(name_of(files[0].outcome.verdict), name_of(verdict)) << first;
            EXPECT_TRUE(files[0].has_problem(kind)) << first;
            if (verdict == Verdict::whole) {
                EXPECT_EQ(files[0].bytes, original);
            }
        }
    }
};

TEST_F(PartCopies, TheSameOnceMoreIsLeftOut) {
    expect_with(parts[1], Verdict::whole, "duplicate-part");
}

TEST_F(PartCopies, OneThatIsCutOffGivesWay) {
    expect_with(parts[1].substr(0, parts[1].size() - 150), Verdict::whole, "damaged-copy");
}

TEST_F(PartCopies, OneWithForeignCharactersGivesWay) {
    std::string copy = parts[1];
    copy[copy.size() - 100] = '~';
    expect_with(copy, Verdict::whole, "damaged-copy");
}

TEST_F(PartCopies, OneThatDiffersIsNeitherDroppedUnsaidNorAppended) {
    std::string copy = parts[1];
    char& c = copy[copy.size() - 100];
    c = c == 'A' ? 'B' : 'A';
    expect_with(copy, Verdict::damaged, "parts-differ");
}

TEST_F(PartCopies, TwoPostsOfOneSubjectBothComeOutAndAreNotVouchedFor) {
    const std::string other = noise(920, 2);
    std::vector<std::string> texts = parts;
    for (const std::string& part : parts_of(other, "x.bin")) texts.push_back(part);
    const auto files = decoded(texts);
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].bytes, original);
    EXPECT_EQ(files[1].bytes, other);
    for (const ScannedFile& file : files) EXPECT_EQ(file.outcome.verdict, Verdict::damaged);
    // The remaining parts of two posts look like one post.
    const auto mixed = decoded({texts[0], texts[2], texts[3], texts[4]});
    for (const ScannedFile& file : mixed) EXPECT_GE(file.outcome.verdict, Verdict::damaged);
}

TEST(PartLabels, NumbersBeforeTheNameAndWithoutATotalTellFilesApart) {
    const std::string a = noise(920), b = noise(920, 2);
    std::vector<std::string> texts;
    for (const auto& [bytes, name] : std::map<std::string, std::string>{{a, "a.zip"}, {b, "b.zip"}}) {
        int number = 0;
        for (std::string text : parts_of(bytes, name)) {
            const std::string old = name + " (" + std::to_string(++number) + "/3)";
            texts.push_back(text.replace(text.find(old), old.size(), "(" + std::to_string(number) + "/3) " + name));
        }
    }
    for (const ScannedFile& file : decoded(texts)) {
        EXPECT_EQ(file.outcome.verdict, Verdict::whole);
        EXPECT_TRUE(file.bytes == a || file.bytes == b);
    }
    for (std::string& text : texts) {
        const std::size_t at = text.find('(');
        const std::string number = text.substr(at + 1, 1), name = text.substr(at + 6, 5);
        text.replace(at, 11, name + " part " + number);
    }
    const auto whole = decoded({texts[0], texts[1], texts[2]});
    ASSERT_EQ(whole.size(), 1U);
    EXPECT_EQ(whole[0].outcome.verdict, Verdict::whole);
    const auto gap = decoded({texts[0], texts[2]});
    ASSERT_EQ(gap.size(), 1U);
    EXPECT_EQ(gap[0].outcome.verdict, Verdict::incomplete);
}

TEST(PartLabels, ATotalThatAPosterMiscountedAndASentenceSplitNothing) {
    const std::string original = noise(920);
    std::vector<std::string> texts = parts_of(original, "x.bin");
    texts[1].replace(texts[1].find("2/3"), 3, "2/4");
    texts[0].insert(texts[0].find("begin "), "Part 7 of 12 is late, sorry.\n\n");
    const auto whole = decoded(texts);
    ASSERT_EQ(whole.size(), 1U);
    EXPECT_EQ(whole[0].bytes, original);
    EXPECT_EQ(whole[0].outcome.verdict, Verdict::whole);
    texts.pop_back();
    EXPECT_EQ(decoded(texts).at(0).outcome.verdict, Verdict::incomplete);
}

TEST(PartLabels, LaterPartsWithLinesOfAnyLengthAreFound) {
    std::string lines[3];
    const std::string bytes = noise(270);
    for (std::size_t at = 0; at < bytes.size(); at += 30) {
        lines[at / 90] += uu_lines(bytes.substr(at, 30))[0] + "\n";
    }
    const auto files = decoded({"Subject: x (1/3)\n\nbegin 644 x\n" + lines[0], "Subject: x (2/3)\n\n" + lines[1],
                                "Subject: x (3/3)\n\n" + lines[2] + "`\nend\n"});
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].bytes, bytes);
    EXPECT_EQ(files[0].outcome.verdict, Verdict::whole);
}

/// A message in pieces, the second twice.
TEST(MessagePieces, CopiesAreComparedAndAMissingTotalIsADoubt) {
    const std::string rows = tests::base64(noise(171));
    const auto piece = [](int number, const std::string& text, const std::string& total) {
        return "Content-Type: message/partial; id=q; number=" + std::to_string(number) + total + "\n\n" + text;
    };
    const std::string head = "Content-Type: x/y; name=a\nContent-Transfer-Encoding: base64\n\n" + rows.substr(0, 77);
    const std::string second = rows.substr(77, 77), third = rows.substr(154) + "\n";
    const std::string total = "; total=3";
    auto files = decoded({piece(1, head, total), piece(2, "", total), piece(2, second, total), piece(3, third, total)});
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].bytes, noise(171));
    files = decoded({piece(1, head, total), piece(2, second, total), piece(2, third, total), piece(3, third, total)});
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].outcome.verdict, Verdict::damaged);
    files = decoded({piece(1, head, ""), piece(2, second, "")});
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].outcome.verdict, Verdict::damaged);
}

}  // namespace
}  // namespace quill::codec
