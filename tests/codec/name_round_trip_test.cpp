// Encoded names come back, whatever they contain, as far as a safe file name allows.
#include "codec/hqx.h"
#include "codec/mail/mime_header.h"
#include "codec/recovery/content_name.h"
#include "codec/recovery/recover.h"
#include "codec/scanned.h"
#include "codec/writing/encode.h"
#include "files/directory.h"
#include "files/path.h"
#include "support/temporary_directory.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <gmock/gmock.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace quill::codec {
namespace {

/// Returns characters from all over the basic plane, and some beyond, between letters.
std::vector<std::string> names_of_all_planes() {
    std::vector<std::string> names;
    for (char32_t c = 0x21; c < 0x10000; c += c < 0x100 ? 1 : 499) {
        if ((c >= 0xD800 && c < 0xE000) || c == '/') continue;
        names.emplace_back("a");
        text::append_utf8(names.back(), c);
        names.back() += "b.bin";
    }
    for (const char32_t c : {U'\U0001F600', U'\U0002A6B2', U'\U000E0041', U'\U0010FFFD'}) {
        names.emplace_back();
        text::append_utf8(names.back(), c);
    }
    return names;
}

/// Returns names with a special meaning in one of the formats.
std::vector<std::string> nasty_names() {
    std::vector<std::string> names = {"=?utf-8?q?x?=.bin",
                                      "a =?utf-8?q?=41?= =?utf-8?b?QQ==?= b",
                                      "=?x",
                                      "?=",
                                      "50%.txt",
                                      "%41.txt",
                                      "a%",
                                      "UTF-8''%41",
                                      "\"quoted\"",
                                      "\"",
                                      "a\"b\"c.txt",
                                      "it's",
                                      "a;b=c.txt",
                                      "filename=x",
                                      "a, b.txt",
                                      "(comment).txt",
                                      "a(1).txt",
                                      " begins with a blank",
                                      "ends with a blank ",
                                      "ends with a dot.",
                                      "...",
                                      "two  blanks.txt",
                                      "C:x.txt",
                                      "a:b.txt",
                                      "a\\b.txt",
                                      "\\\"",
                                      "a\tb",
                                      "a\nb",
                                      "a\x7F",
                                      "a\x1B[31m",
                                      "caf\xE9.txt",
                                      "\x8A\xFF.x",
                                      "Bär\xE2\x82",
                                      "size=3 name=x",
                                      "a name=b.txt",
                                      "644 x",
                                      "begin 644 x",
                                      "end",
                                      "=yend",
                                      "--x",
                                      "-",
                                      ".hidden",
                                      "con.txt",
                                      "a (1/2)",
                                      "x [02/10].rar",
                                      "part 1 of 2",
                                      "photo.jpg      .exe",
                                      "\u202Egpj.exe",
                                      "ﬁ\u0301.txt",
                                      "x.uue",
                                      "a\u0085"
                                      "b",
                                      "a\u2028"
                                      "b",
                                      "a\u00A0"
                                      "b.txt",
                                      "<a>|*?.txt",
                                      "$(x)`y`.sh",
                                      "&amp;.txt",
                                      "a&nbsp;b"};
    for (const std::size_t size : {50U, 51U, 52U, 62U, 63U, 64U, 76U, 200U, 251U, 255U}) {
        names.push_back(std::string(size - 4, 'n') + ".txt");
        if (size >= 50)
            names.push_back(std::string(size % 2, 'n') + [&] {
                std::string umlauts;
                while (umlauts.size() + 2 <= size - size % 2) umlauts += "ü";
                return umlauts;
            }());
    }
    return names;
}

/// Returns names of random bytes and of pieces of MIME syntax.
std::vector<std::string> random_names() {
    constexpr std::string_view pieces[] = {"=?", "?=", "utf-8", "?q?", "?b?", "%", "'", "''", "\"",
                                           "\\", ";",  "=",     " ",   ".",   "a", "ä", "€",  "*",
                                           "0",  "(",  ")",     ",",   "<",   ">", ":", "_"};
    std::mt19937 random(1);
    std::vector<std::string> names;
    for (int i = 0; i < 60; ++i) {
        std::string name;
        for (std::size_t n = 1 + random() % 12; n > 0; --n) {
            const bool byte = random() % 8 == 0;
            name += byte ? std::string(1, static_cast<char>(1 + random() % 255)) : pieces[random() % std::size(pieces)];
        }
        names.push_back(name);
    }
    return names;
}

std::vector<std::string> all_names() {
    std::vector<std::string> names = nasty_names();
    for (const auto& more : {names_of_all_planes(), random_names()})
        names.insert(names.end(), more.begin(), more.end());
    for (std::string& name : names) std::replace(name.begin(), name.end(), '/', '_');
    std::erase_if(names, [](const std::string& name) { return name.size() > 255 || name == "." || name == ".."; });
    return names;
}

/// Returns the name as written: in UTF-8, with '_' for control characters.
std::string written_name(const std::string& name) {
    std::string out = text::to_utf8(name);
    std::replace_if(
        out.begin(), out.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }, '_');
    return out;
}

class NameRoundTrip : public testing::TestWithParam<std::string> {
  protected:
    std::string encode(const std::string& name) {
        files::remove_file("out");
        dir.write(name, "Cat");
        const auto encoded = encode_file(dir.path(name), "out", *output_format(GetParam()));
        files::remove_file(dir.path(name));
        EXPECT_TRUE(encoded) << name;
        return dir.read("out");
    }

    tests::TemporaryDirectory dir;
};

TEST_P(NameRoundTrip, EveryNameComesBack) {
    for (const std::string& name : all_names()) {
        const std::string text = encode(name);
        std::string expected = written_name(name);
        if (GetParam() == "binhex") {
            std::replace(expected.begin(), expected.end(), ':', '-');
            if (expected.size() > 63) continue;
        }
        expected = attachment_name(expected);
        const auto recovery = Recovery::open(std::vector<std::string>{"out"});
        ASSERT_TRUE(recovery);
        ASSERT_EQ(recovery->attachments().size(), 1U) << testing::PrintToString(name);
        const std::string& got = recovery->attachments()[0].name;
        if (expected.empty()) expected = "attachment.bin";
        EXPECT_EQ(got, expected) << testing::PrintToString(name) << "\n" << text.substr(0, 400);
    }
}

INSTANTIATE_TEST_SUITE_P(EncodeAndDecode, NameRoundTrip, testing::Values("uue", "mime", "binhex", "xxe", "yenc"),
                         [](const auto& tested) { return tested.param; });

/// The names from the fields of a message, each read alone: exactly the one written.
TEST(NameRoundTripMime, EachFieldHasTheWholeName) {
    const tests::TemporaryDirectory dir;
    for (const std::string& name : all_names()) {
        files::remove_file("out");
        dir.write(name, "Cat");
        ASSERT_TRUE(encode_file(name, dir.path("out"), *output_format("mime")));
        files::remove_file(name);
        const std::string text = dir.read("out");
        for (const std::string_view left_out : {"", " filename*=", " filename=", "Content-Disposition"}) {
            std::string shorter = text;
            if (const std::size_t at = left_out.empty() ? text.npos : text.find(left_out); at != text.npos) {
                std::size_t end = text.find("\r\n", at) + 2;
                while (text[end] == ' ' && text.substr(end, 5) != " file") end = text.find("\r\n", end) + 2;
                if (left_out == "Content-Disposition" && text.find("\r\n name=") == text.npos) continue;
                if (left_out == "Content-Disposition") end = text.find("\r\n\r\n", at) + 2;
                if (left_out == " filename=" && text.find(" filename*=") == text.npos) continue;
                shorter.erase(at, end - at);
            }
            const auto files = tests::scan_and_decode(shorter);
            ASSERT_EQ(files.size(), 1U) << shorter;
            EXPECT_EQ(files[0].attachment.name, written_name(name)) << "without " << left_out << "\n" << shorter;
            EXPECT_EQ(files[0].bytes, "Cat");
        }
    }
}

struct MacName {
    std::string_view written;
    std::string_view field;
    std::string_view data_fork;
    std::string_view resource_fork;
};

TEST(BinHexName, InACharacterSetThatIsAGuessYieldsToTheHeaders) {
    for (const MacName& c : {MacName{"plain.txt", "; name=other.txt", "plain.txt", "plain.txt.rsrc"},
                             MacName{"B\xC3\xA4r.txt", "; name=other.txt", "Bär.txt", "Bär.txt.rsrc"},
                             MacName{"B\x8Ar.txt", "", "Bär.txt", "Bär.txt.rsrc"},
                             MacName{"\x93\xFA\x96{", "; name=\"=?utf-8?B?5pel5pys?=\"", "日本", "日本.rsrc"}}) {
        const std::string text = std::string("Content-Type: application/mac-binhex40").append(c.field) + "\n\n" +
                                 tests::hqx(tests::binhex_of("data", "resource", std::string(c.written)));
        const auto files = tests::scan_and_decode(text);
        ASSERT_EQ(files.size(), 2U) << text;
        EXPECT_EQ(files[0].attachment.name, c.data_fork);
        EXPECT_EQ(files[1].attachment.name, c.resource_fork);
    }
}

}  // namespace
}  // namespace quill::codec
