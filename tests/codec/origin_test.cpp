#include "codec/mail/origin.h"

#include <gtest/gtest.h>

#include <string>

namespace quill::codec {
namespace {

const std::string mailbox =
    "From ann@example.org Mon Nov 23 16:21:57 2026\n"
    "From: Ann <ann@example.org>\nSubject: one\nMessage-ID: <1@example.org>\n"
    "Date: Mon, 23 Nov 2026 16:21:57 +0000\n\nfirst body\nFrom here on, no mail begins.\n>From quoted\nlast of one\n\n"
    "From bob@example.org Mon Nov 23 16:25:00 2026\n"
    "Subject: two\nFrom: Bob\n\nsecond body\n";

TEST(Origin, IsTheMailOfTheMailboxThatHoldsThePlace) {
    OriginFinder finder(mailbox);
    const Origin one = {"Ann <ann@example.org>", "one", "Mon, 23 Nov 2026 16:21:57 +0000", "<1@example.org>"};
    for (const char* place : {"first body", "last of one", "second body", "first body"}) {
        const bool second = std::string_view(place).starts_with("second");
        EXPECT_EQ(finder.at(mailbox.find(place)), second ? (Origin{"Bob", "two", "", ""}) : one) << place;
    }
}

TEST(Origin, FieldsAreReadAsMeant) {
    struct Case {
        std::string header;
        Origin origin;
    };
    const Case cases[] = {
        {"Subject: =?utf-8?Q?f=C3=BCr?=\r\n =?utf-8?Q?_dich?=\r\n\r\n", {"", "f\xC3\xBCr dich", "", ""}},
        {"SUBJECT: a\n\tb  c\n\n", {"", "a b c", "", ""}},
        {"Subject: first\nSubject: second\n\n", {"", "first", "", ""}},
        {"\n\nMessage-Id: <x>\n\nSubject: in the body\n", {"", "", "", "<x>"}},
        {"Subject: =?utf-8?Q?two=0Alines=1B[2J?=\n\n", {"", "two lines [2J", "", ""}},
        {"no header\nSubject: x\n\n", {}},
        {"", {}},
    };
    for (const auto& [header, origin] : cases) {
        const std::string text = header + "body";
        EXPECT_EQ(OriginFinder(text).at(text.size() - 1), origin) << header;
    }
}

TEST(Origin, OfManyPlacesInALongMailCostsOnePass) {
    std::string text = "Subject: long\n\n";
    while (text.size() < std::size_t{8} << 20) text += "\nFrom the sea comes nothing that begins a mail.\n";
    OriginFinder finder(text);
    for (std::size_t at = 0; at < text.size(); at += 64) ASSERT_EQ(finder.at(at).subject, "long");
}

}  // namespace
}  // namespace quill::codec
