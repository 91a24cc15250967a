#include "codec/encoded.h"
#include "codec/hqx.h"
#include "support/posts.h"
#include "support/recovered_files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quill::codec {
namespace {

using tests::base64_rows;
using tests::bytes_of;
using tests::noise;
using tests::recovered_files;
using tests::RecoveredFile;
using tests::Rows;

struct LawCase {
    std::string name;
    std::string text;
    Verdict verdict;
};

std::string mail(const std::string& encoding, const std::string& body) {
    return "MIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: application/zip; "
           "name=a.zip\nContent-Transfer-Encoding: " +
           encoding + "\n\n" + body + "\n--b--\n";
}

std::string padded_as(const std::string& padding) {
    std::string text = tests::base64(noise(100));  // ends in "=="
    text.resize(text.find('='));
    return mail("base64", text + padding);
}

/// Rows of Base64 of which the third is broken as `break_row` does it.
std::string broken_again(void (*break_row)(std::string& row)) {
    Rows rows = base64_rows(noise(400));
    break_row(rows[2].text);
    std::string text = bytes_of(rows);
    text.pop_back();
    return mail("base64", text);
}

/// Returns a yEnc text whose data is `row`, one byte a character.
std::string yenc_row(const std::string& row) {
    const std::string size = std::to_string(row.size());
    return "=ybegin line=" + size + " size=" + size + " name=a.zip\n" + row + "\n=yend size=" + size + "\n";
}

/// Returns each character that yEnc text may have, `times` over, as a transport leaves it that makes blanks tabs.
std::string every_character_with_tabs_for_blanks(int times) {
    std::string out;
    for (; times > 0; --times) {
        for (int c = 1; c < 256; ++c) {
            if (c != '\n' && c != '\r' && c != '=') out += c == ' ' ? '\t' : static_cast<char>(c);
        }
    }
    return out;
}

std::string yenc_on(std::string_view begin, std::string_view end) {
    std::string data;
    for (const char c : std::string_view("quillbright")) data.push_back(static_cast<char>(c + 42));
    return std::string(begin) + "\n" + data + "\n" + std::string(end) + "\n";
}

/// BinHex of zeros and a few other bytes, with its third row changed.
std::string binhex_of_zeros(void (*change)(std::string& row)) {
    const std::string stream = tests::binhex_of(std::string(300, '\0') + "some bytes" + std::string(90, '\0'), "");
    std::vector<std::string> rows = tests::hqx_lines(stream);
    change(rows[2]);
    std::string text = "(This file must be converted with BinHex 4.0)\n\n";
    for (const std::string& row : rows) text += row;
    return text;
}

const LawCase law_cases[] = {
    {"PaddingThatFits", padded_as("=="), Verdict::whole},
    {"TooLittlePadding", padded_as("="), Verdict::damaged},
    {"TooMuchPadding", padded_as("==="), Verdict::damaged},
    {"ARowBrokenInTwo", broken_again([](std::string& row) { row.insert(30, "\n"); }), Verdict::whole},
    {"ARowBrokenInFour", broken_again([](std::string& row) { row.insert(60, "\n").insert(40, "\n").insert(4, "\n"); }),
     Verdict::whole},
    {"ARowWithoutFourCharacters", broken_again([](std::string& row) { row.erase(30, 4); }), Verdict::damaged},
    {"ARowBrokenAndCut", broken_again([](std::string& row) { row.replace(30, 5, "\n"); }), Verdict::damaged},
    {"Base64WithoutItsBeginLine", bytes_of(base64_rows(noise(400), 60)) + "====\n", Verdict::incomplete},
    {"ARowAfterTheEndOfBase64",
     "begin-base64 644 a.zip\n" + tests::base64(noise(400)) + "\n====\n" + tests::base64(noise(57)) + "\n",
     Verdict::damaged},
    {"QuotedPrintable", mail("quoted-printable", "one=3Done and=\n more"), Verdict::whole},
    {"QuotedPrintableThatGoesOn", mail("quoted-printable", "one=3Done and="), Verdict::incomplete},
    {"QuotedPrintableBeforeAnEmptyLine", mail("quoted-printable", "one=3Done and=\n"), Verdict::whole},
    {"QuotedPrintableWithALongRow", mail("quoted-printable", "one=\n" + std::string(80, 'x')), Verdict::damaged},
    {"QuotedPrintableOfLongRowsAlone", mail("quoted-printable", "=3D\n" + std::string(80, 'x')), Verdict::whole},
    {"QuotedPrintableWithAnEmptyRowAfterABreak", mail("quoted-printable", "one=\n\ntwo"), Verdict::damaged},
    {"QuotedPrintableWithANul", mail("quoted-printable", std::string("o\0ne", 4)), Verdict::damaged},
    {"UuencodedWithoutCheckCharactersButForTheEnd",
     "begin 644 a.zip\n" + tests::text_of(tests::uu_lines(noise(80))) + "``\nend\n", Verdict::damaged},
    {"UuencodedWithTheLastRowFirst",
     "begin 644 a.zip\n" + tests::uu_lines(noise(80))[1] + "\n" + tests::uu_lines(noise(80))[0] + "\n`\nend\n",
     Verdict::damaged},
    {"YencWithASize", yenc_on("=ybegin line=128 size=11 name=a.zip", "=yend size=11"), Verdict::verified},
    {"YencWithAGarbledSize", yenc_on("=ybegin line=128 size=11 name=a.zip", "=yend size=11=crc32=4f44985d"),
     Verdict::damaged},
    {"YencWithAnEscapeOfNothing", "=ybegin line=128 size=2 name=a.zip\nab=\n=yend size=2\n", Verdict::damaged},
    {"YencInOneRow", "=ybegin line=64 size=200 name=a.zip\n" + std::string(200, 'x') + "\n=yend size=200\n",
     Verdict::verified},
    {"YencOfTabs", yenc_row(std::string(64, '\t')), Verdict::verified},
    {"YencWithTabsForBlanks", yenc_row(every_character_with_tabs_for_blanks(4)), Verdict::damaged},
    {"YencWithFewCharacters", yenc_row(std::string(16, '\t') + "abcdefgh"), Verdict::verified},
    {"BinHexOfZeros", binhex_of_zeros([](std::string&) {}), Verdict::verified},
    {"BinHexWithARowBrokenInTwo", binhex_of_zeros([](std::string& row) { row.insert(20, "\n"); }), Verdict::verified},
    {"BinHexWithACharacterLostAmongZeros", binhex_of_zeros([](std::string& row) { row.erase(20, 1); }),
     Verdict::damaged},
};

class BodyLaw : public testing::TestWithParam<LawCase> {};

TEST_P(BodyLaw, GivesNoBetterVerdictThanWasChecked) {
    const tests::Inputs inputs{{"in.txt", GetParam().text}};
    const std::vector<RecoveredFile> found = recovered_files(inputs);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].outcome.verdict, GetParam().verdict);
}

INSTANTIATE_TEST_SUITE_P(Cases, BodyLaw, testing::ValuesIn(law_cases),
                         [](const auto& param) { return param.param.name; });

std::string yenc_parts(unsigned total) {
    const std::string bytes = noise(300);
    std::string text;
    for (unsigned part = 0; part < 2; ++part) {
        text += bytes_of(tests::yenc_part(
            {"a.zip", std::string_view(bytes).substr(part * 150, 150), part * 150, bytes.size(), part + 1, total}));
    }
    return text;
}

TEST(BodyLaw, CountsTheStatedPartsOfYencBesideTheStatedSize) {
    for (const auto& [total, verdict] : {std::pair(2U, Verdict::verified), std::pair(3U, Verdict::incomplete)}) {
        const tests::Inputs inputs{{"in.txt", yenc_parts(total)}};
        const std::vector<RecoveredFile> found = recovered_files(inputs);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found[0].bytes, noise(300));
        EXPECT_EQ(found[0].outcome.verdict, verdict) << total;
    }
}

}  // namespace
}  // namespace quill::codec
