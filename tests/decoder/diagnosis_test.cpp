#include "decoder/diagnosis.h"

#include "decoder/type_icons.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::decoder {
namespace {

using namespace std::string_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string repeated(std::size_t n, const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < n; ++i) out += text;
    return out;
}

struct Case {
    const char* what;
    std::string text;
    Likely kind;
    const char* advice;  ///< part of the advice on what to try next
};

TEST(Diagnosis, TellsWhatAFileIsAndWhatToTryNext) {
    const std::string base64_row = repeated(19, "QUJD") + "\r\n";
    const std::string uu_row = "M" + repeated(12, "1;V%") + "1;V%1;V%1;V%" + "\r\n";
    const std::vector<Case> cases = {
        {"nothing", "", Likely::empty, "Save the message again"},
        {"a picture", "\xFF\xD8\xFF\xE0\0\x10JFIF"s, Likely::known_file, "ending that fits"},
        {"an archive", "PK\x03\x04\x14"s, Likely::known_file, "ending that fits"},
        {"wide text",
         "\xFF\xFE"
         "b\0e\0g\0"s,
         Likely::wide_text, "save it as plain text"},
        {"binary", repeated(20, "\x01\x02\x03 data \x7F"s), Likely::binary, "lacks the right name"},
        {"PGP", "Hello\r\n-----BEGIN PGP MESSAGE-----\r\n" + base64_row, Likely::encrypted, "your key"},
        {"S/MIME", "Content-Type: application/pkcs7-mime; name=x\r\n" + base64_row, Likely::encrypted, "your key"},
        {"a header and no rows", "Content-Transfer-Encoding: BASE64\r\n\r\nsee below\r\n", Likely::damaged_encoding,
         "nothing else may stand between them"},
        {"a begin line and no rows", "begin 644 cat.jpg\r\nhello\r\n", Likely::damaged_encoding, "sent again"},
        {"yEnc", "=ybegin line=128 size=1 name=x\r\n", Likely::damaged_encoding, "sent again"},
        {"tags for line ends", "<html>\r\n" + repeated(20, repeated(15, "QUJD") + "<BR>"), Likely::one_long_line,
         "a long line with <BR>"},
        {"quoted-printable", "caf=E9 and 1=3D1 =\r\n=20\r\n", Likely::quoted_printable, "qpunwrap"},
        {"a program", "int a=10, b=20, c=30;\r\nfor (i=0; i<a; i+=1) x[i]=b==c;\r\n", Likely::plain_text,
         "save the message again"},
        {"a quoted-printable part", "Content-Transfer-Encoding: quoted-printable\r\n\r\nhi\r\n",
         Likely::quoted_printable, "qpunwrap"},
        {"UUE without its begin line", repeated(8, uu_row) + "`\r\nend\r\n", Likely::headless_uu, "begin 644 NAME"},
        {"Base64 without a header", repeated(8, base64_row), Likely::headless_base64, "even rows"},
        {"Base64 in a Unix file", repeated(8, repeated(15, "QUJD") + "\n"), Likely::headless_base64, "even rows"},
        {"a letter", "Dear Ada,\r\nbegin 64 ways you like = fine.\r\nYours\r\n", Likely::plain_text,
         "save the message again"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(likely_kind(c.text, look_at(c.text)), c.kind) << c.what;
        const std::string text = diagnosis_text(c.text);
        const std::size_t next = text.find("What to try next: ");
        ASSERT_NE(next, text.npos);
        const std::size_t end = text.find("\n\nWhat was looked for: ", next);
        EXPECT_THAT(text.substr(next, end - next), HasSubstr(c.advice)) << c.what;
    }
}

TEST(Diagnosis, SaysWhatWasSeen) {
    const std::string text =
        diagnosis_text("short\r\n\r\n" + repeated(3, std::string(60, 'A') + "\r\n") + "caf\xE9 \x01<BR>\r\n");
    EXPECT_THAT(text, AllOf(HasSubstr("the file has 207 bytes."), HasSubstr("It has 6 lines, 1 of them empty."),
                            HasSubstr("The shortest has 5 characters, the longest 60; the most frequent length is 60 "
                                      "(3 lines)."),
                            HasSubstr("1 control character and 1 byte above 127"), HasSubstr("<BR> occurs 1 time."),
                            HasSubstr("It begins:\n    short\n    AAAA")));
}

TEST(Diagnosis, OneLineIsSpokenOfAsOne) {
    EXPECT_THAT(diagnosis_text("hello"), HasSubstr("It has 1 line. The line has 5 characters."));
    EXPECT_THAT(diagnosis_text("\r\nhello\r\n"),
                HasSubstr("It has 2 lines, 1 of them empty. The other one has 5 characters."));
    EXPECT_THAT(diagnosis_text("hello\r\nworld\r\n"), HasSubstr("It has 2 lines. Each has 5 characters."));
}

TEST(Diagnosis, NamesTheLineThatAnnouncesAnEncodedFile) {
    EXPECT_THAT(diagnosis_text("Hi\r\n\r\nbegin 644 cat.jpg\r\nbegin 644 dog.jpg\r\n"),
                AllOf(HasSubstr("Line 3 announces UUE or XXE text: begin 644 cat.jpg\n"), Not(HasSubstr("Line 4"))));
}

TEST(Diagnosis, SaysWhatTypeADecodedFileIs) {
    EXPECT_THAT(diagnosis_text("%PDF-1.4\n"),
                HasSubstr("it begins like a PDF document, whose name usually ends in .pdf."));
}

TEST(TextFacts, CountsWhatLiesOutsideEachAlphabet) {
    const TextFacts facts = look_at("Az+/= `~!-\r\n\xE9\x7F");
    EXPECT_EQ(facts.characters, 11U);
    EXPECT_EQ(facts.outside_base64, 6U);  // ` ~ ! - E9 7F
    EXPECT_EQ(facts.outside_uu, 4U);      // z ~ E9 7F
    EXPECT_EQ(facts.outside_xx, 7U);      // / = ` ~ ! E9 7F
    EXPECT_EQ(facts.outside_binhex, 6U);  // z / = ~ E9 7F
    EXPECT_EQ(facts.eight_bit, 1U);
    EXPECT_EQ(facts.control, 1U);
}

TEST(TextFacts, ALineFeedAloneIsACharacterWhereOtherLinesEndInCarriageReturns) {
    const TextFacts mixed = look_at("one\r\ntwo\nthree\r\n");
    EXPECT_EQ(mixed.lines, 2U);
    EXPECT_EQ(mixed.lone_line_feeds, 1U);
    EXPECT_EQ(look_at("one\ntwo\n").lone_line_feeds, 0U);
}

TEST(TextFacts, ShowsOnlyWhatCanBeShown) {
    EXPECT_EQ(shown("a\x1B[31m\xE9\tb"), "a.[31m..b");
    EXPECT_EQ(shown(std::string(61, 'x')), std::string(60, 'x') + "...");
}

TEST(TextFacts, LooksAtNoMoreThanItsLimit) {
    const TextFacts facts = look_at(std::string(most_bytes_looked_at + 5, 'x'));
    EXPECT_EQ(facts.size, most_bytes_looked_at + 5);
    EXPECT_EQ(facts.looked_at, most_bytes_looked_at);
    EXPECT_EQ(facts.longest, most_bytes_looked_at);
}

TEST(TypeIcons, FollowTheEndingInAnyCase) {
    EXPECT_EQ(icon_for_name("a.tar.GZ"), "package-x-generic");
    EXPECT_EQ(icon_for_name("page.Html"), "text-html");
    for (const char* name : {"readme", "x.", "x.unknown", "jpg", "x.jp"})
        EXPECT_EQ(icon_for_name(name), "text-x-generic");
}

}  // namespace
}  // namespace quill::decoder
