#include "codec/hqx.h"
#include "codec/scan/text_scan.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quill::codec {
namespace {

using tests::scan_and_decode;
using tests::ScannedFile;

std::string varied(std::size_t size) {
    std::string out;
    for (unsigned i = 0, n = 1; i < size; ++i, n = n * 1103515245U + 12345U)
        out.push_back(static_cast<char>(n >> 24U & 0x7FU));
    return out;
}

/// A file in three pieces of lines: the banner in the first, the last colon in the last.
class BinHexParts : public testing::Test {
  protected:
    BinHexParts() {
        const std::vector<std::string> lines = tests::hqx_lines(tests::binhex_of(data, resource));
        pieces[0] = "(This file must be converted with BinHex 4.0)\n\n";
        for (std::size_t i = 0; i < lines.size(); ++i) pieces[i < 5 ? 0 : i < 10 ? 1 : 2] += lines[i];
    }

    /// Returns a post with piece `n` of 3, from 1.
    std::string post(unsigned n) const {
        return "From: a@b\nSubject: a.sc.hqx (" + std::to_string(n) + "/3)\n\n" + pieces[n - 1];
    }

    static void expect_verified(const std::vector<ScannedFile>& files) {
        ASSERT_EQ(files.size(), 2U);
        EXPECT_EQ(files[0].attachment.name, "a.sc");
        EXPECT_EQ(files[0].bytes, data);
        EXPECT_EQ(files[0].outcome.verdict, Verdict::verified);
        EXPECT_TRUE(files[1].attachment.resource_fork);
        EXPECT_EQ(files[1].bytes, resource);
        EXPECT_EQ(files[1].outcome.verdict, Verdict::verified);
    }

    /// Returns the files found, without message texts.
    static std::vector<ScannedFile> files_of(const std::vector<std::string_view>& texts,
                                             const std::vector<std::string>& paths) {
        std::vector<ScannedFile> files = scan_and_decode(texts, paths);
        std::erase_if(files, [](const ScannedFile& file) { return file.attachment.message_text; });
        return files;
    }

    static std::vector<ScannedFile> files_of(const std::string& text) { return files_of({text}, {"text"}); }

    static inline const std::string data = varied(500);
    static inline const std::string resource = varied(180);
    std::string pieces[3];
};

TEST_F(BinHexParts, AreJoinedByTheNumbersInTheirSubjects) {
    const std::string one = post(1), two = post(2), three = post(3);
    expect_verified(files_of({three, one, two}, {"a", "b", "c"}));
    const std::string separator = "\nFrom a@b Sat Jan  3 01:05:34 1996\n";
    expect_verified(files_of(separator.substr(1) + two + separator + three + separator + one));
    expect_verified(files_of({one, two, three, two}, {"a", "b", "c", "d"}));
}

TEST_F(BinHexParts, AreJoinedInTheOrderGivenWhereNothingIsSaidOfThem) {
    expect_verified(files_of({pieces[0], pieces[1], pieces[2]}, {"a", "b", "c"}));
    expect_verified(files_of({pieces[2], pieces[0], pieces[1]}, {"x.3", "x.1", "x.2"}));
    const std::string two = post(2), three = post(3);
    expect_verified(files_of({three, two, pieces[0]}, {"a", "b", "c"}));
}

TEST_F(BinHexParts, LinesBetweenThemArePassedOver) {
    const std::string divided = pieces[0] + "---\nend of part 1\n\npart 2 of 3\n---\n" + pieces[1] +
                                "--- end of part 2 of 3 ---\n--- part 3 of 3 ---\n" + pieces[2];
    expect_verified(files_of(divided));
    const std::string far = "Path: news!x\nNewsgroups: comp.sys.mac\nXref: a b:1\nDate: today\nOrganization: none\n\n";
    expect_verified(files_of(pieces[0] + far + pieces[1] + "Xref: a b:2\n" + far + pieces[2]));
}

TEST_F(BinHexParts, OneThatIsMissingIsTold) {
    const std::string one = post(1), two = post(2), three = post(3);
    const std::vector<ScannedFile> files = files_of({one, three}, {"a", "b"});
    ASSERT_EQ(files.size(), 2U);
    for (const ScannedFile& file : files) {
        EXPECT_EQ(file.outcome.verdict, Verdict::incomplete);
        ASSERT_TRUE(file.has_problem("missing-part"));
        EXPECT_EQ(file.outcome.problems.front().text, "Part 2 of 3 is missing");
    }
    const std::vector<ScannedFile> headless = files_of({two, three}, {"a", "b"});
    ASSERT_EQ(headless.size(), 1U);
    EXPECT_EQ(headless[0].attachment.name, "a.sc.hqx");
    EXPECT_EQ(headless[0].outcome.verdict, Verdict::incomplete);
    EXPECT_TRUE(headless[0].has_problem("missing-part"));
    EXPECT_EQ(headless[0].bytes, "");
}

TEST_F(BinHexParts, AForkThatIsWholeIsVerifiedWithoutTheOthersParts) {
    const std::string one = post(1), two = post(2);
    pieces[1] += pieces[2].substr(0, 2 * 65);
    const std::string more = post(2);
    const std::vector<ScannedFile> files = files_of({one, more}, {"a", "b"});
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].bytes, data);
    EXPECT_EQ(files[0].outcome.verdict, Verdict::verified);
    EXPECT_EQ(files[1].outcome.verdict, Verdict::incomplete);
}

TEST_F(BinHexParts, LinesAreNoPartWhereNothingAsksForThem) {
    EXPECT_TRUE(files_of(pieces[1]).empty());
    EXPECT_TRUE(files_of("Subject: a (1/3)\n\n" + pieces[1]).empty());
    expect_verified(files_of(pieces[0] + pieces[1] + pieces[2] + "\n" + pieces[1]));
    const std::string other = "Subject: other.hqx (2/2)\n\n" + pieces[1];
    EXPECT_TRUE(files_of(other).empty());
    for (const char* text : {"Dear:\n", "FAQ:\n-- \nme\n"}) {
        EXPECT_TRUE(files_of(std::string("Subject: hi (2/2)\n\n") + text).empty()) << text;
    }
    const std::string one = post(1), two = post(2), three = post(3);
    const std::vector<ScannedFile> files = files_of({one, other, two, three}, {"a", "b", "c", "d"});
    expect_verified(files);
    EXPECT_TRUE(
        files_of(pieces[0] + "\n\nSome text.\n\n\n\n" + std::string(64, '#') + "\n" + std::string(64, '#') + "\n")
            .front()
            .bytes.size() < data.size());
}

TEST_F(BinHexParts, OtherFilesBetweenLinesAreFound) {
    const std::string lines = pieces[1].substr(0, 2 * 65);
    const std::string subject = "Subject: x (2/3)\n\n";
    for (const std::string file : {
             "begin 644 a.bin\n#86)C\n`\nend\n",
             "=ybegin line=128 size=3 name=a.bin\n\x8B\x8C\x8D\n=yend size=3\n",
             "\nContent-Type: application/x; name=a.bin\nContent-Transfer-Encoding: base64\n\nYWJj\n\n",
         }) {
        for (const std::string& text : {lines + file + lines, subject + lines + file + lines}) {
            const std::vector<ScannedFile> files = files_of(text);
            ASSERT_EQ(files.size(), 1U) << text;
            EXPECT_EQ(files[0].attachment.name, "a.bin");
            EXPECT_EQ(files[0].bytes, "abc") << text;
        }
    }
    std::string row = "M", row_bytes;
    for (unsigned i = 0; i < 15; ++i) row += "=V%T", row_bytes += "wat";
    row += "\n";
    const std::vector<ScannedFile> joined =
        files_of("Subject: x (1/2)\n\nbegin 644 a.bin\n" + row + "\nFrom a@b 01:02:03\nSubject: x (2/2)\n\n" + lines +
                 "\n\n\n\n" + row + row + row + "`\nend\n");
    ASSERT_EQ(joined.size(), 1U);
    EXPECT_EQ(joined[0].bytes, row_bytes + row_bytes + row_bytes + row_bytes);
    const std::string whole = pieces[0] + pieces[1] + pieces[2];
    expect_verified(files_of(lines + whole));
    expect_verified(files_of(lines + whole.substr(whole.find(':'))));
    const std::vector<ScannedFile> behind_one_cut_off = files_of(pieces[0] + whole);
    ASSERT_EQ(behind_one_cut_off.size(), 4U);
    EXPECT_EQ(behind_one_cut_off[0].outcome.verdict, Verdict::incomplete);
    EXPECT_EQ(behind_one_cut_off[2].outcome.verdict, Verdict::verified);
}

TEST_F(BinHexParts, ThatNothingAsksForTakeNoPlaceFromFiles) {
    const std::string lines = pieces[1].substr(0, 2 * 65) + "hello world\n\n\n\n\n\nx y ~\n";
    std::string text;
    for (std::size_t i = 0; i < most_files + 10; ++i) text += lines;
    const std::vector<ScannedFile> files = files_of(text + "begin 644 a.bin\n#86)C\n`\nend\n");
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].bytes, "abc");
}

TEST_F(BinHexParts, OfTwoFilesGoWhereTheyBelong) {
    const std::string other_data = varied(400) + "!";
    std::string other[2] = {"(This file must be converted with BinHex 4.0)\n", ""};
    const std::vector<std::string> lines = tests::hqx_lines(tests::binhex_of(other_data, ""));
    for (std::size_t i = 0; i < lines.size(); ++i) other[i < 4 ? 0 : 1] += lines[i];
    const std::string first = "Subject: b.hqx (1/2)\n\n" + other[0], last = "Subject: b.hqx (2/2)\n\n" + other[1];
    const std::string one = post(1), two = post(2), three = post(3);
    const std::vector<ScannedFile> files = files_of({last, three, first, two, one}, {"a", "b", "c", "d", "e"});
    ASSERT_EQ(files.size(), 3U);
    for (const ScannedFile& file : files) EXPECT_EQ(file.outcome.verdict, Verdict::verified);
    const std::vector<ScannedFile> in_order =
        files_of({pieces[0], pieces[1], pieces[2], other[0], other[1]}, {"a", "b", "c", "d", "e"});
    ASSERT_EQ(in_order.size(), 3U);
    for (const ScannedFile& file : in_order) EXPECT_EQ(file.outcome.verdict, Verdict::verified);
}

}  // namespace
}  // namespace quill::codec
