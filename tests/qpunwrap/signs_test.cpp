#include "qpunwrap/signs.h"

#include <gtest/gtest.h>

#include <string>

namespace quill::qpunwrap {
namespace {

std::string repeated(int n, const std::string& text) {
    std::string out;
    for (int i = 0; i < n; ++i) out += text;
    return out;
}

TEST(HoldsQuotedPrintable, IsTrueOfWhatEncodersWrite) {
    for (const std::string& text : {
             std::string("1 + 1 =3D 2\r\n"),
             std::string("caf=E9=\n!\n"),
             std::string("fa=E7ade\r\n"),
             std::string("=C3=89t=C3=A9\r\n"),
             std::string("fran=c3=a7ais\n"),  // lower case violates the rules, but occurs
             std::string("Hello Ada,=20\r\n"),
             std::string("it=92s a =93word=94\r\n"),
             std::string("a line of plain words that is as long as the rules permit, and then goes on=\n.\n"),
             std::string("plain words =\r\nthat need =\r\nsoft breaks =\r\nalone\r\n"),
             std::string("<a href=3D\"http://example.org/?id=3D12&x=3DFA\">caf=E9</a>\r\n"),
             std::string("=46rom here on\r\nna=EFve\r\n"),
             std::string("Content-Type: text/plain;\r\n charset=\"utf-8\"; format=flowed\r\n\r\nna=EFve\r\n"),
             std::string("From ada Mon Jan  1\nSubject: =?utf-8?Q?=C3=A9?=\n\nna=EFve\n"),
             repeated(3, "<p align=\"center\" class=\"note\">words that fill the line up to its end <b =\nx=\"y\">\n"),
             repeated(20, "=C3=A9 and =C3=A0 ") + "see http://example.org/?a=b\r\n",
         }) {
        EXPECT_TRUE(holds_quoted_printable(text)) << text;
    }
}

TEST(HoldsQuotedPrintable, IsFalseOfOtherTextWithEqualsSigns) {
    for (const std::string& text : {
             std::string(), std::string("x=3"),
             std::string("see http://example.org/?id=12&x=FA and http://example.org/a?page=20&c=ABBA\r\n"),
             std::string("int mask=0xFF;\nint width=20, height=30;\nauto name =\n    other;\n"
                         "for (i=0; i<10; i+=2) a[i]=AB;\n"),
             std::string("colour=FF0000\r\nback=C0C0FF\r\nname=Ada\r\n"), std::string("colour=FF0000\r\n"),
             std::string("<td width=20 align=center bgcolor=FFFFFF border=0>\n"),
             std::string("set(standard \"--iso=90\") quality=85\n"), repeated(4, "option(\"-std=c89\")\n"),
             std::string("CFLAGS=-O2\nCC=gcc\nOUT=default\nMODE=fast\n"),
             repeated(9, "QUJDREVGR0hJSktMTU5PUFFSU1RVVldYWVo=\r\n"),
             repeated(9, repeated(19, "QUJD") + "\r\n") + "QUI=\r\n", std::string("QUJDRA==\r\n"),
             repeated(3, "// A divider of a program =================================================\nx=1;\n"),
             repeated(3, "Heading\n=======\n\n"), std::string("=ybegin line=128 size=20 name=AB\r\n=AB\r\n"),
             repeated(30, "M=7)E=\"!S=6-R970@=&AI<R!I<R!U=65N8V]D960@=&5X=\"!A;F0@;F]T(&%N\n"),
             std::string("a=\r\nb=\r\nc"),  // two line ends may be chance
         }) {
        EXPECT_FALSE(holds_quoted_printable(text)) << text;
    }
}

}  // namespace
}  // namespace quill::qpunwrap
