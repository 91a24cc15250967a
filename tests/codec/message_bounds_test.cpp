#include "codec/encoded.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quill::codec {
namespace {

using tests::scan_and_decode;
using tests::ScannedFile;

const std::string rows = tests::base64(tests::noise(200)) + "\n";

std::string mail(const std::string& name, const std::string& more = "") {
    return more + "Content-Type: x/y; name=" + name + "\nContent-Transfer-Encoding: base64\n\n" + rows;
}

/// Returns the names of the files in `text`, with a '!' for one that is not whole or has other bytes.
std::string names_in(const std::string& text) {
    std::string out;
    for (const ScannedFile& file : scan_and_decode(text)) {
        if (file.attachment.message_text) continue;
        const bool good = file.outcome.verdict <= Verdict::whole && file.bytes == tests::noise(200);
        out += (out.empty() ? "" : " ") + file.attachment.name + (good ? "" : "!");
    }
    return out;
}

TEST(MessageBounds, AFromLineWithATimeBeginsAMessageWithoutAnEmptyLineBeforeIt) {
    const std::string from = "From a@b Mon Jan 20 00:39:22 2020\n";
    EXPECT_EQ(names_in(from + mail("a") + from + mail("b")), "a b");
    EXPECT_EQ(names_in(from + mail("a") + "\n" + from + mail("b")), "a b");
    EXPECT_EQ(names_in(from + mail("a") + from + "X-Field: 1\n" + mail("b")), "a b");
    EXPECT_EQ(names_in(from + "Subject: x\n\nhello\n" + from + mail("b")), "b");
    const std::string prose = "From: a\nSubject: x\n\nLines\nFrom Russia with love\nSubject: to change\n";
    EXPECT_EQ(scan_and_decode(prose).size(), 1U);
    EXPECT_EQ(scan_and_decode("From: a\nSubject: x\n\nLines\nFrom 10:30 on we meet\nNote: bring a cup\n").size(), 1U);
}

TEST(MessageBounds, AStatedLengthKeepsAFromLineWithinItsMessage) {
    const std::string from = "From a@b Mon Jan 20 00:39:22 2020\n";
    const std::string text = "see:\n\n" + from + "Subject: quoted\n\nbye\n";
    const std::string length = "Content-Length: " + std::to_string(text.size()) + "\n";
    EXPECT_EQ(scan_and_decode(from + length + "Subject: x\n\n" + text + "\n" + from + mail("b")).size(), 2U);
    EXPECT_EQ(scan_and_decode(from + "Content-Length: 7\nSubject: x\n\n" + text + "\n" + from + mail("b")).size(), 3U)
        << "the length leads to no end of a message";
}

TEST(MessageBounds, ALineOfBlanksIsFoldedIntoAHeaderThatGoesOn) {
    EXPECT_EQ(names_in("Subject: x\n \t\n" + mail("a")), "a");
    EXPECT_EQ(names_in("Content-Type: x/y; name=a\n \nContent-Transfer-Encoding: base64\n\n" + rows), "a");
    const auto text = scan_and_decode("From: a\nSubject: x\n \nNote: this is the text\nand goes on\n");
    ASSERT_EQ(text.size(), 1U);
    EXPECT_EQ(text[0].bytes, "Note: this is the text\nand goes on\n");
}

TEST(MessageBounds, ABoundaryOutOfPlaceAndOneThatIsLostSplitPartsOfBase64) {
    const std::string head = "MIME-Version: 1.0\nContent-Type: multipart/mixed; boundary=b1\n\n--b1\n";
    const std::string data = rows.substr(0, rows.size() - 1);
    for (const std::string between : {"\n--b1\n", "\n --b1\n", "\n> --b1\n", "--b1\n", "\n"}) {
        EXPECT_EQ(names_in(head + mail("a").substr(0, mail("a").size() - 1) + between + mail("b") + "--b1--\n"), "a b")
            << between;
    }
    EXPECT_EQ(names_in(mail("a", "Subject: x\n") + "From: me\n" + mail("b")), "a b");
}

TEST(MessageBounds, WhatLiesTooDeepIsSaidOnce) {
    std::string text = "MIME-Version: 1.0\n";
    for (int i = 0; i < 500; ++i) {
        const std::string name = "b" + std::to_string(i);
        text += "Content-Type: multipart/mixed; boundary=" + name + "\n\n--" + name + "\n";
    }
    LineCursor cursor({{text, {0, text.size(), 0}}});
    EXPECT_EQ(scan(cursor).problems.size(), 1U);
}

}  // namespace
}  // namespace quill::codec
