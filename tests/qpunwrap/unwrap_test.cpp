#include "qpunwrap/unwrap.h"

#include "qpunwrap/report.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>

namespace quill::qpunwrap {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string message =
    "From: ada@example.org\r\n"
    "MIME-Version: 1.0\r\n"
    "Content-Type: multipart/mixed; boundary=\"cut\"\r\n"
    "\r\n"
    "--cut\r\n"
    "Content-Type: text/plain; charset=utf-8\r\n"
    "Content-Transfer-Encoding: quoted-printable\r\n"
    "\r\n"
    "The caf=C3=A9 is =\r\n"
    "open.\r\n"
    "--cut\r\n"
    "Content-Type: text/csv; name=\"list.csv\"\r\n"
    "Content-Transfer-Encoding: quoted-printable\r\n"
    "\r\n"
    "a=3Db\r\n"
    "--cut\r\n"
    "Content-Type: image/gif; name=\"x.gif\"\r\n"
    "Content-Transfer-Encoding: base64\r\n"
    "\r\n"
    "R0lGODlh\r\n"
    "--cut--\r\n";

class Unwrap : public testing::Test {
  protected:
    Report unwrap_file(const std::string& name, const std::string& text) {
        const std::string path = directory_.write(name, text);
        return report(path, unwrap(path));
    }

    tests::TemporaryDirectory directory_;
};

TEST_F(Unwrap, WritesTheQuotedPrintablePartsOfAMessageAndNoOthers) {
    const Report said = unwrap_file("letter.eml", message);
    EXPECT_EQ(said.status, ExitStatus::made);
    EXPECT_THAT(directory_.names(), ElementsAre("letter-message.txt", "letter.eml", "list.csv"));
    EXPECT_EQ(directory_.read("letter-message.txt"), "The caf\xC3\xA9 is open.");
    EXPECT_EQ(directory_.read("list.csv"), "a=b");
    EXPECT_EQ(directory_.read("letter.eml"), message);
    EXPECT_THAT(said.text, AllOf(HasSubstr("letter-message.txt, 18 bytes"), HasSubstr("list.csv, 3 bytes"),
                                 HasSubstr("Written to " + directory_.path())));
}

TEST_F(Unwrap, WritesBareTextAsAWhole) {
    const Report said = unwrap_file("post.mim", "begin=20644=20x\r\nA=3DB=\r\nC \r\n");
    EXPECT_EQ(said.status, ExitStatus::made);
    EXPECT_THAT(directory_.names(), ElementsAre("post-unwrapped.mim", "post.mim"));
    EXPECT_EQ(directory_.read("post-unwrapped.mim"), "begin 644 x\r\nA=BC\r\n");
}

TEST_F(Unwrap, BareTextThatFillsItsLinesIsNoMessage) {
    const std::string words(60, 'x');
    const std::string line = words + "=C3=A9 =3D =\r\n";
    const Report said = unwrap_file("post.txt", line + line + line + "end\r\n");
    EXPECT_THAT(directory_.names(), ElementsAre("post-unwrapped.txt", "post.txt"));
    const std::string unwrapped = words + "\xC3\xA9 = ";
    EXPECT_EQ(directory_.read("post-unwrapped.txt"), unwrapped + unwrapped + unwrapped + "end\r\n");
    EXPECT_THAT(said.text, HasSubstr("The quoted-printable text of post.txt:"));
}

TEST_F(Unwrap, ReadsUnixText) {
    unwrap_file("note", "caf=E9=\n!\n");
    EXPECT_EQ(directory_.read("note-unwrapped.txt"), "caf\xE9!\n");
}

TEST_F(Unwrap, NeverReplacesAFile) {
    unwrap_file("post.mim", "a=3Db\r\n");
    const Report said = unwrap_file("post.mim", "c=3Dd\r\n");
    EXPECT_EQ(directory_.read("post-unwrapped.mim"), "a=b\r\n");
    EXPECT_EQ(directory_.read("post-unwrapped (2).mim"), "c=d\r\n");
    EXPECT_THAT(said.text, HasSubstr("post-unwrapped (2).mim"));
}

TEST_F(Unwrap, SaysWhenThereIsNothingToUndo) {
    for (const char* text : {"", "plain\r\n", "QUJDRA==\r\n", "1 = 1, 2 =3 and =x\r\n"}) {
        const Report said = unwrap_file("post.mim", text);
        EXPECT_EQ(said.status, ExitStatus::nothing) << text;
        EXPECT_EQ(said.text, "post.mim holds no quoted-printable text. Nothing was made.\n");
    }
    EXPECT_THAT(directory_.names(), ElementsAre("post.mim"));
}

TEST_F(Unwrap, SaysWhyAFileCannotBeRead) {
    for (const std::string& name : {std::string("gone\x1B[2J"), std::string(".")}) {
        const std::string path = directory_.path(name);
        const Report said = report(path, unwrap(path));
        EXPECT_EQ(said.status, ExitStatus::failed);
        EXPECT_THAT(said.text, AllOf(HasSubstr("could not be read: "), testing::Not(HasSubstr("\x1B"))));
    }
}

TEST_F(Unwrap, TellsOfWhatIsNotRightInTheText) {
    const Report said = unwrap_file("post.txt", "a=3Db =3Dc =zz\r\n");
    EXPECT_EQ(directory_.read("post-unwrapped.txt"), "a=b =c =zz\r\n");
    EXPECT_THAT(said.text, HasSubstr("12 bytes\n    "));
}

}  // namespace
}  // namespace quill::qpunwrap
