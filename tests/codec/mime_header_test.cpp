#include "codec/mail/mime_header.h"

#include "codec/mail/encoded_word.h"
#include "codec/recovery/content_name.h"

#include <gtest/gtest.h>

#include <string>

namespace quill::codec {
namespace {

struct NameCase {
    std::string_view value;  // of Content-Disposition
    std::string_view name;
};

class FileName : public testing::TestWithParam<NameCase> {};

TEST_P(FileName, IsReadAsMeant) {
    ContentHeader header;
    take_field(header, "Content-Disposition", GetParam().value);
    EXPECT_EQ(header.file_name, GetParam().name) << GetParam().value;
}

INSTANTIATE_TEST_SUITE_P(
    Values, FileName,
    testing::Values(NameCase{R"(attachment; filename="a b.txt")", "a b.txt"},
                    NameCase{"attachment; filename=my file (1).txt; size=3", "my file (1).txt"},
                    NameCase{R"(attachment; filename="a\"b.txt")", "a\"b.txt"},
                    NameCase{R"(attachment; filename="C:\TEMP\x.png")", R"(C:\TEMP\x.png)"},
                    NameCase{"attachment;; filename=\"never closed.txt", "never closed.txt"},
                    NameCase{"attachment; filename=\"=?iso-8859-1?Q?=FCber.txt?=\"", "über.txt"},
                    NameCase{"attachment; filename==?utf-8?B?w7xiZXI=?= =?utf-8?Q?_all.txt?=", "über all.txt"},
                    NameCase{"attachment; filename=\"=?utf-8?Q?=C3?= =?utf-8?Q?=BC.txt?=\"", "ü.txt"},
                    NameCase{"attachment; filename*=UTF-8''%E2%82%AC.txt; filename=euro.txt", "€.txt"},
                    NameCase{"attachment; filename*1*=%BC.txt; filename*0*=iso-8859-1'de'%FC", "ü¼.txt"},
                    NameCase{"attachment; filename*0=\"long \"; filename*1=\"name.txt\"", "long name.txt"},
                    NameCase{"attachment; filename*0=a; filename*2=c", "a"},
                    NameCase{"attachment; filename=\xFC.txt", "ü.txt"},
                    NameCase{"attachment; filename=\"=?iso-2022-jp?B?GyRCJUYbKEI=?=.txt\"", "テ.txt"},
                    NameCase{"attachment; filename=\"=?x-nowhere?Q?=41?=\"", "A"},
                    NameCase{"attachment; filename=\"=?utf-8?Q?half\"", "=?utf-8?Q?half"},
                    NameCase{"attachment; filename*0=*tuf-8'7Bild%05\x9E%C3%B\xAFM\xFA\xD7\x14ge-'",
                             "*tuf-8'7Bild%05ž%C3%B¯Mú×\x14ge-'"},
                    NameCase{"attachment; filename*0=\"\xFC=?utf-8?Q?=C3=BC?=\"; filename*1=\"\xE4.txt\"", "üüä.txt"}));

TEST(MimeHeader, ANameCutInMidCharacterKeepsItsWholeCharacters) {
    for (const std::string_view value :
         {"attachment; filename=B\xC3\xA4r\xE2\x82.txt", "attachment; filename*=UTF-8''B%C3%A4r%E2%82.txt",
          "attachment; filename*=B%C3%A4r%E2%82.txt", "attachment; filename=\"=?utf-8?Q?B=C3=A4r=E2=82?=.txt\"",
          "attachment; filename=\"=?us-ascii?Q?B=C3=A4r=E2=82.txt?=\""}) {
        ContentHeader header;
        take_field(header, "Content-Disposition", value);
        EXPECT_TRUE(header.file_name.starts_with("Bär\uFFFD") && header.file_name.ends_with(".txt"))
            << header.file_name;
    }
}

TEST(MimeHeader, RawBytesOfANameAreInTheCharacterSetOfTheText) {
    for (const std::string_view parameter : {"name=\xC0.txt", "name*0=\xC0; name*1=.txt"}) {
        ContentHeader header;
        take_field(header, "Content-Type", std::string("text/plain; charset=koi8-r; ").append(parameter));
        EXPECT_EQ(header.file_name, "ю.txt") << parameter;
    }
}

TEST(MimeHeader, TheSubjectIsUtf8) {
    ContentHeader header;
    take_field(header, "Subject", " \xFC =?iso-8859-1?Q?=FC?=");
    EXPECT_EQ(header.subject, "ü ü");
}

TEST(MimeHeader, ReadsPartsOfAMessage) {
    ContentHeader header;
    take_field(header, "content-type", "message/partial; id=\"x@y\"; number=2; total=3");
    EXPECT_EQ(header.partial_id, "x@y");
    EXPECT_EQ(header.partial_number, 2U);
    EXPECT_EQ(header.partial_total, 3U);
}

TEST(AttachmentName, IsABareSafeNameWithoutSemicolons) {
    EXPECT_EQ(attachment_name("../../etc/pass;wd"), "pass_wd");
    EXPECT_EQ(attachment_name("..\\..\\x.exe"), "x.exe");
    EXPECT_EQ(attachment_name("../.."), "");
    EXPECT_EQ(made_up_name(false, "application/octet-stream", "\x89PNG\r\n\x1A\n..."), "attachment.png");
    EXPECT_EQ(made_up_name(false, "image/gif", ""), "attachment.gif");
    EXPECT_EQ(made_up_name(true, "text/html", ""), "message.html");
}

TEST(DecodeWords, LeavesTextThatIsNoWordAlone) {
    EXPECT_EQ(decode_words("a =? b ?= c"), "a =? b ?= c");
    EXPECT_EQ(decode_words("x =?utf-8?Q?y?= z"), "x y z");
}

}  // namespace
}  // namespace quill::codec
