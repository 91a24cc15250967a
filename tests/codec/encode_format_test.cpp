#include "codec/writing/encode.h"
#include "files/directory.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::codec {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using tests::TemporaryDirectory;

/// Returns `input`, saved as `name`, in the encoded form.
std::string encoded(std::string_view format, std::string_view name, std::string_view input,
                    const EncodeOptions& options = {}) {
    const TemporaryDirectory dir;
    dir.write(name, input);
    const auto written = encode_file(std::string(name), "out", *output_format(format), options);
    EXPECT_TRUE(written) << (written ? "" : written.error().text);
    return written ? dir.read("out") : std::string();
}

TEST(EncodeUue, AFileHasItsModeLinesOf45BytesAndAnEnd) {
    EXPECT_EQ(encoded("uue", "cat.txt", "Cat"), "begin 644 cat.txt\r\n#0V%T\r\n`\r\nend\r\n");
    EXPECT_EQ(encoded("uue", "empty", ""), "begin 644 empty\r\n`\r\nend\r\n");
    const std::string two_lines = encoded("uue", "a", std::string(46, 'a'));
    EXPECT_THAT(two_lines, StartsWith("begin 644 a\r\nM86%A"));
    EXPECT_THAT(two_lines, EndsWith("\r\n!80``\r\n`\r\nend\r\n"));
}

TEST(EncodeUue, AHeaderAsLongAsALineIsNotTakenForData) {
    const std::string name(51, 'n');
    EXPECT_THAT(encoded("uue", name, "x"), StartsWith("\r\nbegin 644 " + name + "\r\n"));
    EXPECT_THAT(encoded("uue", name + "m", "x"), StartsWith("\r\nbegin 644 "));
    EXPECT_THAT(encoded("uue", name + "mm", "x"), StartsWith("begin 644 "));
}

TEST(EncodeXxe, TheAlphabetIsXxencodes) {
    EXPECT_EQ(encoded("xxe", "cat.txt", "Cat"), "begin 644 cat.txt\r\n1Eq3o\r\n+\r\nend\r\n");
}

TEST(EncodeMime, APlainNameIsQuoted) {
    EXPECT_EQ(encoded("mime", "two words.bin", "abcd"),
              "MIME-Version: 1.0\r\n"
              "Subject: two words.bin\r\n"
              "Content-Type: application/octet-stream\r\n"
              "Content-Transfer-Encoding: base64\r\n"
              "Content-Disposition: attachment;\r\n"
              " filename=\"two words.bin\"\r\n"
              "\r\n"
              "YWJjZA==\r\n");
}

TEST(EncodeMime, AnyOtherNameTakesTheFormsOfTheStandardsAndOneForOlderReaders) {
    const std::string message = encoded("mime", "Grün \"1\".txt", "x");
    EXPECT_THAT(message, HasSubstr("\r\n filename*=UTF-8''Gr%C3%BCn%20%221%22.txt\r\n"));
    EXPECT_THAT(message, HasSubstr("\r\n filename=\"=?UTF-8?B?R3LDvG4gIjEiLnR4dA==?=\";\r\n"));
    EXPECT_THAT(message, HasSubstr("octet-stream;\r\n name=\"=?UTF-8?B?R3LDvG4gIjEiLnR4dA==?=\"\r\n"));
    EXPECT_THAT(message, HasSubstr("\r\nSubject: =?UTF-8?B?R3LDvG4gIjEiLnR4dA==?=\r\n"));
    EXPECT_THAT(encoded("mime", "caf\xe9", "x"), HasSubstr("filename*=UTF-8''caf%C3%A9\r\n")) << "Windows-1252";
    EXPECT_THAT(encoded("mime", "50% \"a\"", "x"),
                HasSubstr(" filename=\"50% \\\"a\\\"\";\r\n filename*=UTF-8''50%25%20%22a%22\r\n"));
    EXPECT_THAT(encoded("mime", "=?utf-8?q?x?=.bin", "x"),
                HasSubstr("\r\n filename*=UTF-8''%3D%3Futf-8%3Fq%3Fx%3F%3D.bin\r\n"));
}

TEST(EncodeMime, EncodedWordsHoldWholeCharactersAndAreAtMost75Long) {
    std::string name;
    for (int i = 0; i < 60; ++i) name += "\u20ac";  // three bytes each
    const std::string message = encoded("mime", name, "x");
    const std::size_t begin = message.find("Subject: ") + 9;
    std::string subject = message.substr(begin, message.find("\r\nContent-Type") - begin);
    int words = 0;
    for (std::size_t at = 0; at < subject.size(); ++words) {
        const std::size_t end = std::min(subject.find("\r\n ", at), subject.size());
        const std::string word = subject.substr(at, end - at);
        EXPECT_LE(word.size(), 75U);
        EXPECT_THAT(word, StartsWith("=?UTF-8?B?4oKs")) << "begins with a whole character";
        at = end + 3;
    }
    EXPECT_EQ(words, 5);
}

TEST(EncodeMime, LinesAreAsLongAsAskedFor) {
    EXPECT_THAT(encoded("mime", "a", "abcdefg", {.line_length = 4}), EndsWith("\r\n\r\nYWJj\r\nZGVm\r\nZw==\r\n"));
}

TEST(EncodeYenc, AnEmptyFileHasAnEmptyDataLine) {
    EXPECT_EQ(encoded("yenc", "a b.bin", ""), "\r\n\r\n=ybegin line=128 size=0 name=a b.bin\r\n\r\n=yend size=0\r\n");
}

TEST(EncodeYenc, FourBytesAreEscapedAndNoOthers) {
    const std::string head = "\r\n\r\n=ybegin line=128 size=9 name=a\r\n";
    EXPECT_EQ(encoded("yenc", "a", "\xd6\xe0\xe3\x13\xd5\x04\xdf\xf6\x00" + std::string(1, '\0')),
              "\r\n\r\n=ybegin line=128 size=9 name=a\r\n=@=J=M=}\xff.\x09\x20*\r\n=yend size=9\r\n")
        << head;
}

TEST(EncodeYenc, ALineOf128CharactersIsFollowedByAnEmptyOne) {
    const std::string line(128, 'A' + 42);
    EXPECT_EQ(encoded("yenc", "a", std::string(128, 'A')),
              "\r\n\r\n=ybegin line=128 size=128 name=a\r\n" + line + "\r\n\r\n=yend size=128\r\n");
}

TEST(EncodeYenc, AnEscapedPairIsNotSplit) {
    const std::string text = encoded("yenc", "a", std::string(127, 'A') + "\xe0" + "B");
    EXPECT_THAT(text, HasSubstr("\r\n" + std::string(127, 'k') + "=J\r\nl\r\n=yend"));
}

TEST(EncodeYenc, TheTrailerStatesACrcWhereAskedFor) {
    EXPECT_THAT(encoded("yenc", "a", "123456789", {.crc = true}), EndsWith("\r\n=yend size=9 crc32=cbf43926\r\n"));
}

TEST(EncodeYenc, PartsSayWhereTheyBelong) {
    const TemporaryDirectory dir;
    dir.write("n.bin", "123456789");
    const auto written =
        encode_file("n.bin", "o.ync", *output_format("yenc"), {.line_length = 64, .part_size = 4, .crc = true});
    ASSERT_TRUE(written);
    EXPECT_THAT(*written, ElementsAre("o.1.ync", "o.2.ync", "o.3.ync"));
    EXPECT_EQ(dir.read("o.2.ync"),
              "\r\n\r\n=ybegin part=2 total=3 line=64 size=9 name=n.bin\r\n=ypart begin=5 end=8\r\n"
              "_`ab\r\n=yend size=4 part=2 pcrc32=7e525607\r\n");
    EXPECT_THAT(dir.read("o.3.ync"), EndsWith("=yend size=1 part=3 pcrc32=8d076785 crc32=cbf43926\r\n"));
}

TEST(EncodeUue, PartsAreWholeLinesAndSayWhichTheyAre) {
    const TemporaryDirectory dir;
    dir.write("n.bin", std::string(100, 'a'));
    ASSERT_TRUE(encode_file("n.bin", "o.UUE", *output_format("uue"), {.part_size = 89}));
    EXPECT_THAT(dir.read("o.1.UUE"), StartsWith("Subject: n.bin (1/3)\r\n\r\nbegin 644 n.bin\r\nM"));
    EXPECT_THAT(dir.read("o.2.UUE"), StartsWith("Subject: n.bin (2/3)\r\n\r\nM"));
    EXPECT_THAT(dir.read("o.3.UUE"),
                testing::AllOf(StartsWith("Subject: n.bin (3/3)\r\n\r\n*"), EndsWith("\r\n`\r\nend\r\n")));
}

TEST(EncodeBinhex, RunsAreCountedAndTheMarkerIsEscaped) {
    // Decoded by hand: name "a", no type, a data fork of 5 'x' and one 0x90, an empty resource fork.
    const std::string text = encoded("binhex", "a", "xxxxx\x90");
    EXPECT_THAT(text, StartsWith("(This file must be converted with BinHex 4.0)\r\n\r\n:"));
    EXPECT_THAT(text, EndsWith(":\r\n"));
}

TEST(EncodeFile, ControlCharactersInANameBreakNoHeaderLine) {
    EXPECT_THAT(encoded("uue", "a\nend\n", "x"), StartsWith("begin 644 a_end_\r\n"));
    EXPECT_THAT(encoded("yenc", "a\r\n=yend", "x"), HasSubstr(" name=a__=yend\r\n"));
    EXPECT_THAT(encoded("mime", "a\nBcc: b", "x"), HasSubstr("Subject: a_Bcc: b\r\n"));
}

TEST(DefaultOutputPath, TheLibrarysFormatsCutBehindTheFirstDotOfThePath) {
    const OutputFormat& uue = *output_format("uue");
    EXPECT_EQ(default_output_path(uue, "/mail/photo.jpg"), "/mail/photo.UUE");
    EXPECT_EQ(default_output_path(uue, "/mail/old.photo.jpg"), "/mail/old.UUE");
    EXPECT_EQ(default_output_path(*output_format("mime"), "/my.files/a.txt"), "/my.MME");
    EXPECT_EQ(default_output_path(*output_format("binhex"), "/mail/a"), "HQX");
    EXPECT_EQ(default_output_path(*output_format("xxe"), "a."), "a.XXE");
}

TEST(DefaultOutputPath, YencReplacesTheLastThreeCharactersWhateverTheyAre) {
    const OutputFormat& yenc = *output_format("yenc");
    EXPECT_EQ(default_output_path(yenc, "/mail/photo.jpg"), "/mail/photo.ync");
    EXPECT_EQ(default_output_path(yenc, "/mail/song.jpeg"), "/mail/song.jync");
    EXPECT_EQ(default_output_path(yenc, "/mail/readme"), "/mail/reaync");
    EXPECT_EQ(default_output_path(yenc, "a"), "ync");
}

TEST(PartPath, NumbersAreAsLongAsTheLastOne) {
    EXPECT_EQ(part_path("/d.x/a.ync", 1, 1), "/d.x/a.ync");
    EXPECT_EQ(part_path("/d.x/a.ync", 7, 12), "/d.x/a.07.ync");
    EXPECT_EQ(part_path("/d.x/a", 7, 9), "/d.x/a.7");
}

TEST(EncodeFile, AnInputIsNeverReplacedByItsOutput) {
    const TemporaryDirectory dir;
    dir.write("a.ync", "precious");
    std::filesystem::create_symlink("a.ync", "link.ync");
    std::filesystem::create_hard_link("a.ync", "hard.ync");
    for (const char* output : {"a.ync", "./a.ync", "link.ync", "hard.ync"}) {
        const auto written = encode_file("a.ync", output, *output_format("yenc"));
        ASSERT_FALSE(written) << output;
        EXPECT_EQ(written.error().code, ErrorCode::bad_argument);
        EXPECT_EQ(dir.read("a.ync"), "precious");
    }
    const auto through_link = encode_file("link.ync", "a.ync", *output_format("yenc"));
    ASSERT_FALSE(through_link);
    EXPECT_EQ(dir.read("a.ync"), "precious");
    // One of several parts is enough.
    dir.write("b.2.ync", "abc");
    EXPECT_FALSE(encode_file("b.2.ync", "b.ync", *output_format("yenc"), {.part_size = 1}));
    EXPECT_THAT(dir.names(), ElementsAre("a.ync", "b.2.ync", "hard.ync", "link.ync"));
}

TEST(EncodeFile, WhatCannotBeDoneLeavesTheOldOutputAndNothingElse) {
    const TemporaryDirectory dir;
    dir.write("in", "abc");
    dir.write("out", "old");
    dir.make_directory("taken");
    struct Case {
        std::string input, output, format;
        EncodeOptions options;
        ErrorCode code;
    };
    const std::vector<Case> cases = {
        {"absent", "out", "uue", {}, ErrorCode::not_found},
        {"taken", "out", "uue", {}, ErrorCode::access},
        {"in", "absent/out", "uue", {}, ErrorCode::not_found},
        {"in", "out", "uue", {.line_length = 60}, ErrorCode::bad_argument},
        {"in", "out", "mime", {.line_length = 70}, ErrorCode::bad_argument},
        {"in", "out", "mime", {.part_size = 2}, ErrorCode::bad_argument},
        {"in", "out", "yenc", {.line_length = 1000}, ErrorCode::bad_argument},
        {"in", "out", "uue", {.part_size = 44}, ErrorCode::bad_argument},
        {"in", "out", "xxe", {.crc = true}, ErrorCode::bad_argument},
    };
    for (const Case& c : cases) {
        const auto written = encode_file(c.input, c.output, *output_format(c.format), c.options);
        ASSERT_FALSE(written) << c.input << ' ' << c.format;
        EXPECT_EQ(written.error().code, c.code) << c.input << ' ' << c.format;
    }
    EXPECT_FALSE(encode_file("in", "taken", *output_format("uue")));
    const EncodeOptions replacing{.on_collision = files::OnCollision::replace};
    const auto stopped = encode_file("in", "out", *output_format("uue"), replacing, [](auto, auto) { return false; });
    ASSERT_FALSE(stopped);
    EXPECT_EQ(stopped.error().code, ErrorCode::cancelled);
    EXPECT_EQ(dir.read("out"), "old");
    EXPECT_THAT(dir.names(), ElementsAre("in", "out", "taken"));
}

TEST(EncodeFile, AnOlderOutputIsReplacedWhenThatIsAskedForOnly) {
    const TemporaryDirectory dir;
    dir.write("in", "Cat");
    dir.write("out", "old");
    const auto refused = encode_file("in", "out", *output_format("uue"));
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().code, ErrorCode::exists);
    EXPECT_EQ(dir.read("out"), "old");
    ASSERT_TRUE(encode_file("in", "out", *output_format("uue"), {.on_collision = files::OnCollision::replace}));
    EXPECT_THAT(dir.read("out"), StartsWith("begin 644 in"));
}

TEST(EncodeFile, PartsGoWhenALaterOneFails) {
    const TemporaryDirectory dir;
    dir.write("in", std::string(100, 'x'));
    const auto stop_late = [](std::uint64_t done, std::uint64_t) { return done <= 40; };
    const auto stopped = encode_file("in", "out.ync", *output_format("yenc"), {.part_size = 20}, stop_late);
    ASSERT_FALSE(stopped);
    EXPECT_EQ(stopped.error().code, ErrorCode::cancelled);
    EXPECT_THAT(dir.names(), ElementsAre("in"));
}

}  // namespace
}  // namespace quill::codec
