#include "codec/scan/scanner.h"

#include "codec/scan/text_scan.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <gmock/gmock.h>
#include <string>

namespace quill::codec {
namespace {

using tests::scan_and_decode;
using tests::ScannedFile;

struct Found1 {
    std::string_view what;
    std::string text;
    std::string name;
    std::string bytes;
    Verdict verdict;
};

const std::string mixed = "From: a@b\nMIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=B\n\n";
const std::string gif_part = "Content-Type: image/gif; name=a.gif\nContent-Transfer-Encoding: base64\n\nR0lGODlh\n";

class OneFile : public testing::TestWithParam<Found1> {};

TEST_P(OneFile, IsFoundAndDecoded) {
    const std::vector<ScannedFile> files = scan_and_decode(GetParam().text);
    const auto named = std::find_if(files.begin(), files.end(), [&](const ScannedFile& file) {
        return !file.attachment.message_text && file.attachment.name == GetParam().name;
    });
    ASSERT_NE(named, files.end()) << GetParam().what;
    EXPECT_EQ(named->bytes, GetParam().bytes) << GetParam().what;
    EXPECT_EQ(name_of(named->outcome.verdict), name_of(GetParam().verdict)) << GetParam().what;
}

const std::string cat_line = "#0V%T\n";  // "Cat"

INSTANTIATE_TEST_SUITE_P(
    Texts, OneFile,
    testing::Values(
        Found1{"a part", mixed + "--B\n" + gif_part + "--B--\n", "a.gif", "GIF89a", Verdict::whole},
        Found1{"a backslash in the type",
               "Content-Type: application\\octet-stream; name=x.bin\nContent-Transfer-Encoding: base64\n\nQUJD\n",
               "x.bin", "ABC", Verdict::whole},
        Found1{"words behind the encoding",
               "Content-Type: image/gif; name=a.gif\nContent-Transfer-Encoding: base64 (as ever)\n\nR0lGODlh\n",
               "a.gif", "GIF89a", Verdict::whole},
        Found1{"a wrong boundary", mixed + "--C\n" + gif_part + "--C--\n", "a.gif", "GIF89a", Verdict::whole},
        Found1{"no closing boundary, padding",
               mixed + "--B\nContent-Type: x/y; name=a\nContent-Transfer-Encoding: base64\n\nQUI=\n", "a", "AB",
               Verdict::whole},
        Found1{"no closing boundary, no padding", mixed + "--B\n" + gif_part, "a.gif", "GIF89a", Verdict::incomplete},
        Found1{"no blank line behind the header",
               "Content-Type: image/gif; name=a.gif\nContent-Transfer-Encoding: base64\nR0lGODlh\n", "a.gif", "GIF89a",
               Verdict::whole},
        Found1{"a header folded without a blank",
               "Content-Type: image/gif;\nname=\"a.gif\"\nContent-Transfer-Encoding: base64\n\nR0lGODlh\n", "a.gif",
               "GIF89a", Verdict::whole},
        Found1{"CR line ends", "Content-Type: image/gif; name=a.gif\rContent-Transfer-Encoding: base64\r\rR0lGODlh\r",
               "a.gif", "GIF89a", Verdict::whole},
        Found1{"CR CR LF line ends",
               "Content-Type: image/gif; name=a.gif\r\r\nContent-Transfer-Encoding: base64\r\r\n\r\r\nR0lGODlh\r\r\n",
               "a.gif", "GIF89a", Verdict::whole},
        Found1{"double-spaced",
               "Subject: x\n\nContent-Type: image/gif; name=a.gif\n\nContent-Transfer-Encoding: "
               "base64\n\n\nR0lG\n\nODlh\n\n",
               "a.gif", "GIF89a", Verdict::whole},
        Found1{"text behind the data",
               "Content-Type: image/gif; name=a.gif\nContent-Transfer-Encoding: base64\n\nR0lGODlh\n\nYours, Ann (at "
               "home)\n",
               "a.gif", "GIF89a", Verdict::whole},
        Found1{
            "a size that agrees",
            "Content-Disposition: attachment; filename=a.gif; size=6\nContent-Transfer-Encoding: base64\n\nR0lGODlh\n",
            "a.gif", "GIF89a", Verdict::verified},
        Found1{
            "a size that is larger",
            "Content-Disposition: attachment; filename=a.gif; size=60\nContent-Transfer-Encoding: base64\n\nR0lGODlh\n",
            "a.gif", "GIF89a", Verdict::incomplete},
        Found1{"an MD5 that agrees",
               "Content-Type: x/y; name=a\nContent-MD5: kAFQmDzST7DWlj99KOF/cg==\nContent-Transfer-Encoding: "
               "base64\n\nYWJj\n",
               "a", "abc", Verdict::verified},
        Found1{"an MD5 that does not",
               "Content-Type: x/y; name=a\nContent-MD5: kAFQmDzST7DWlj99KOF/cg==\nContent-Transfer-Encoding: "
               "base64\n\nYWJk\n",
               "a", "abd", Verdict::damaged},
        Found1{"quoted-printable",
               "Content-Type: text/plain; name=a\nContent-Transfer-Encoding: quoted-printable\n\na=3Db =\nc \nd", "a",
               "a=b c\nd", Verdict::whole},
        Found1{"uuencode", "text\nbegin 644 cat\n" + cat_line + "`\nend\n", "cat", "Cat", Verdict::whole},
        Found1{"uuencode within a part",
               mixed + "--B\nContent-Type: x/y; name=kitty\nContent-Transfer-Encoding: x-uuencode\n\n" +
                   "begin 644 cat\n" + cat_line + "`\nend\n--B--\n",
               "kitty", "Cat", Verdict::whole},
        Found1{"uuencode, no end", "begin 644 cat\n" + cat_line, "cat", "Cat", Verdict::incomplete},
        Found1{"uuencode, a bad mode", "begin rw- cat\n" + cat_line + "`\nend\n", "cat", "Cat", Verdict::whole},
        Found1{"uuencode, a check character", "begin 644 cat\n#0V%T_\n`\nend\n", "cat", "Cat", Verdict::whole},
        Found1{"uuencode, a check character that disagrees", "begin 644 cat\n#0V%T!\n`\nend\n", "cat", "Cat",
               Verdict::damaged},
        Found1{"uuencode, lost blanks", "begin 644 z\n#\n\nend\n", "z", std::string(3, '\0'), Verdict::whole},
        Found1{"uuencode, double-spaced", "begin 644 cat\n\n" + cat_line + "\n`\n\nend\n", "cat", "Cat",
               Verdict::whole},
        Found1{"uuencode, a size line", "begin 644 cat\n" + cat_line + "`\nend\nsize 3\n", "cat", "Cat",
               Verdict::verified},
        Found1{"uuencode, an empty file", "begin 644 none\n`\nend\n", "none", "", Verdict::whole},
        Found1{"xxencode", "begin 644 cat\n1Eq3o\n+\nend\n", "cat", "Cat", Verdict::whole},
        Found1{"begin-base64", "begin-base64 644 abc\nYWJj\n====\n", "abc", "abc", Verdict::whole}));

/// Messages as they come out of gateways, archives and editors.
INSTANTIATE_TEST_SUITE_P(
    Mangled, OneFile,
    testing::Values(
        Found1{"no boundary in the header",
               "MIME-Version: 1.0\nContent-Type: multipart/mixed\n\n--Q\n" + gif_part + "--Q--\n", "a.gif", "GIF89a",
               Verdict::whole},
        Found1{"blanks behind the boundary", mixed + "--B  \t\n" + gif_part + "--B-- \n", "a.gif", "GIF89a",
               Verdict::whole},
        Found1{"an inner multipart that is not closed",
               mixed + "--B\nContent-Type: multipart/related; boundary=C\n\n--C\nContent-Type: text/html\n\nhi\n--B\n" +
                   gif_part + "--B--\n",
               "a.gif", "GIF89a", Verdict::whole},
        Found1{"an inner boundary that begins with the outer one",
               mixed + "--B\nContent-Type: multipart/related; boundary=BB\n\n--BB\n" + gif_part + "--BB--\n\n--B--\n",
               "a.gif", "GIF89a", Verdict::whole},
        Found1{"a header in capitals",
               "CONTENT-TYPE: IMAGE/GIF; NAME=a.gif\nCONTENT-TRANSFER-ENCODING: BASE64\n\nR0lGODlh\n", "a.gif",
               "GIF89a", Verdict::whole},
        Found1{"a blank before the colon",
               "Content-Type : image/gif; name=a.gif\nContent-Transfer-Encoding : base64\n\nR0lGODlh\n", "a.gif",
               "GIF89a", Verdict::whole},
        Found1{"a comment within the field",
               "Content-Type: image/gif (a picture); name=\"a.gif\"\nContent-Transfer-Encoding: base64\n\nR0lGODlh\n",
               "a.gif", "GIF89a", Verdict::whole},
        Found1{"a name in encoded words",
               "Content-Type: image/gif; name=\"=?iso-8859-1?Q?sch=F6n=2Egif?=\"\nContent-Transfer-Encoding: "
               "base64\n\nR0lGODlh\n",
               "sch\u00F6n.gif", "GIF89a", Verdict::whole},
        Found1{"a name in continued parameters",
               "Content-Type: image/gif\nContent-Disposition: attachment; filename*0*=utf-8''sch%C3; "
               "filename*1*=%B6n;\n filename*2=.gif\n"
               "Content-Transfer-Encoding: base64\n\nR0lGODlh\n",
               "sch\u00F6n.gif", "GIF89a", Verdict::whole},
        Found1{"line ends of all kinds in one message",
               "Content-Type: image/gif; name=a.gif\r\nContent-Transfer-Encoding: base64\n\r\nR0lG\rODlh\r\r\n",
               "a.gif", "GIF89a", Verdict::whole},
        Found1{"no padding", "Content-Type: x/y; name=a\nContent-Transfer-Encoding: base64\n\nQUJDRA\n", "a", "ABCD",
               Verdict::damaged},
        Found1{"pieces that are padded each",
               "Content-Type: x/y; name=a\nContent-Transfer-Encoding: "
               "base64\n\nMTIzNDU2Nzg5MDEyMzQ1Ng==\nMTIzNDU2Nzg5MDEyMzQ1Ng==\n",
               "a", "12345678901234561234567890123456", Verdict::damaged},
        Found1{"words before the data",
               "Content-Type: x/y; name=a\nContent-Transfer-Encoding: base64\n\nThis is it:\n\nQUJDRA==\n", "a", "ABCD",
               Verdict::damaged},
        Found1{"blanks among the Base64",
               "Content-Type: x/y; name=a\nContent-Transfer-Encoding: base64\n\n QU JD\t\n  RA==\n", "a", "ABCD",
               Verdict::whole},
        Found1{"blanks and graves for zero", "begin 644 z\n#``` \n`\nend\n", "z", std::string(3, '\0'), Verdict::whole},
        Found1{"blanks behind the lines", "begin 644 cat  \n#0V%T  \n`  \nend  \n", "cat", "Cat", Verdict::whole},
        Found1{"no line of length 0", "begin 644 cat\n" + cat_line + "end\n", "cat", "Cat", Verdict::whole},
        Found1{"prose between lines of data", "begin 644 cat\n" + cat_line + "[cut here]\n" + cat_line + "`\nend\n",
               "cat", "CatCat", Verdict::damaged},
        Found1{"two files, no end between", "begin 644 dog\n" + cat_line + "begin 644 cat\n" + cat_line + "`\nend\n",
               "cat", "Cat", Verdict::whole},
        Found1{"a mailbox whose line of data was marked",
               "From a@b Mon Jan  1 00:00:00 2024\nSubject: x\n\n>From here\nbegin 644 cat\n" + cat_line +
                   "`\nend\n\nFrom a@b Mon Jan  1 00:00:00 "
                   "2024\nSubject: y\n\nhi\n",
               "cat", "Cat", Verdict::whole},
        Found1{"quoted", "Ann wrote:\n> begin 644 cat\n> #0V%T\n> `\n> end\n>\n> Ann\n\nThanks!\n", "cat", "Cat",
               Verdict::whole},
        Found1{"quoted twice, blanks lost behind the marks", "> > begin 644 z\r\n> > #\r\n> >\r\n> > end\r\n", "z",
               std::string(3, '\0'), Verdict::whole},
        Found1{"quoted without blanks, xxencoded", ">begin 644 cat\n>1Eq3o\n>+\n>end\n", "cat", "Cat", Verdict::whole},
        Found1{"quoted, and the quotation breaks off", "| begin 644 cat\n| #0V%T\nThanks!\n", "cat", "Cat",
               Verdict::incomplete},
        Found1{"quoted, and the marks end before the data", "| begin 644 cat\n| #0V%T\n#0V%T\n`\nend\n", "cat",
               "CatCat", Verdict::damaged},
        Found1{"quoted, a damaged line among the data",
               "> begin 644 cat\n> #0V%T\n> #0v%T\n> #0V%T\n> `\n> end\n> size 9\n", "cat", "Cat@\x01tCat",
               Verdict::damaged},
        Found1{"a part of one line that the subject announces", "Subject: cat (2/3)\n\n#0V%T\n", "cat", "Cat",
               Verdict::incomplete},
        Found1{"a last part of one line", "#0V%T\n`\nend\n", "", "Cat", Verdict::incomplete}));

TEST(Scanner, DoesNotTakeProseForABeginLine) {
    EXPECT_TRUE(scan_and_decode("begin 5 minutes early\nand bring the others with you\n").empty());
    EXPECT_TRUE(scan_and_decode("begin 644 is a mode\nthat many files have\nin these days\n").empty());
}

TEST(Scanner, DoesNotTakeQuotedProseForABeginLine) {
    EXPECT_TRUE(scan_and_decode("> begin 644 is a mode\n> that many files have\n> in these days\n").empty());
    EXPECT_TRUE(scan_and_decode("> begin 644 cat\n#0V%T\n`\nend, so to speak\n").empty());
}

/// Each part has its own marks, or none.
TEST(Scanner, JoinsQuotedPartsWithOthers) {
    const std::string line = "M" + std::string(60, '=') + "\n";
    std::string lines, quoted;
    for (int i = 0; i < 8000; ++i) lines += line, quoted += "> " + line;
    const std::vector<ScannedFile> files =
        scan_and_decode("part 1 of 2\n\n> begin 644 a.bin\n" + quoted + "\npart 2 of 2\n\n" + lines + "`\nend\n");
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].outcome.verdict, Verdict::whole);
    ASSERT_EQ(files[0].bytes.size(), 720'000U);
    EXPECT_EQ(files[0].bytes.substr(0, 360'000), files[0].bytes.substr(360'000));
}

TEST(Scanner, DoesNotTakeKeysAndHashesForBareBase64) {
    const std::string key(64, 'Q');
    EXPECT_TRUE(scan_and_decode("-----BEGIN X-----\n" + key + "\n" + key + "\n" + key + "\n-----END X-----\n").empty());
    const std::string hash(64, 'a');
    EXPECT_TRUE(scan_and_decode(hash + "\n" + hash + "\n" + hash + "\n").empty());
}

TEST(Scanner, FollowsMessagesWithinMessagesAndMailboxes) {
    const std::string inner = "Content-Type: message/rfc822\n\nSubject: inner\n" + gif_part;
    const std::string mail = "From a@b Sat Jan  3 01:05:34 1996\n" + mixed + "--B\n" + inner + "--B--\n\n";
    const std::vector<ScannedFile> files = scan_and_decode(mail + mail);
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].bytes, "GIF89a");
    EXPECT_EQ(files[1].bytes, "GIF89a");
}

TEST(Scanner, LeavesTheLineEndBeforeABoundaryOut) {
    const std::vector<ScannedFile> files = scan_and_decode(mixed + "--B\n\nhello\r\n\r\n--B\n\nyou\n--B--\n");
    ASSERT_EQ(files.size(), 2U);
    EXPECT_TRUE(files[0].attachment.message_text);
    EXPECT_EQ(files[0].bytes, "hello\r\n");
    EXPECT_EQ(files[1].bytes, "you");
}

TEST(Scanner, ReadsNestingBeyondItsLimitAsTextAndSaysSo) {
    std::string text;
    for (int i = 0; i < 300; ++i) {
        const std::string b = "b" + std::to_string(i);
        text += "Content-Type: multipart/mixed; boundary=" + b + "\n\n--" + b + "\n";
    }
    LineCursor cursor({{text, {0, text.size(), 0}}});
    const Found found = scan(cursor);
    ASSERT_FALSE(found.problems.empty());
    EXPECT_EQ(word_of(found.problems.front()), "too-deep");
}

TEST(Scanner, KeepsNoMoreFilesThanItsLimit) {
    std::string text;
    for (std::size_t i = 0; i < most_files + 10; ++i) text += "begin 644 a\n" + cat_line + "`\nend\n";
    LineCursor cursor({{text, {0, text.size(), 0}}});
    const Found found = scan(cursor);
    EXPECT_EQ(found.files.size(), most_files);
    ASSERT_EQ(found.problems.size(), 1U);
    EXPECT_EQ(word_of(found.problems.front()), "too-many-files");
}

TEST(Scanner, TextsThatNobodyWantsTakeNoFilesPlace) {
    std::string mailbox;
    for (std::size_t i = 0; i < most_files + 10; ++i) mailbox += "From a@b 01:02:03\nSubject: x\n\nhello\n\n";
    mailbox += mixed + "--B\n\nhello\n--B\n" + gif_part + "--B--\n";
    LineCursor cursor({{mailbox, {0, mailbox.size(), 0}}});
    const Found found = scan(cursor, Texts::left_out);
    ASSERT_EQ(found.files.size(), 1U);
    EXPECT_EQ(found.files[0].attachment.name, "a.gif");
    EXPECT_TRUE(found.problems.empty());
}

}  // namespace
}  // namespace quill::codec
