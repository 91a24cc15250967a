#include "decoder/triage.h"

#include "decoder/naming_window.h"
#include "decoder/repair_guide.h"
#include "decoder/triage_rewrites.h"
#include "files/directory.h"
#include "files/path.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quill::decoder {
namespace {

using Names = std::vector<std::string>;

/// A message with one Base64 attachment, `name`, of the bytes "hello, world".
std::string message_with(const std::string& name) {
    return "Subject: a file\r\n"
           "MIME-Version: 1.0\r\n"
           "Content-Type: application/octet-stream; name=\"" +
           name +
           "\"\r\n"
           "Content-Disposition: attachment; filename=\"" +
           name +
           "\"\r\n"
           "Content-Transfer-Encoding: base64\r\n"
           "\r\n"
           "aGVsbG8sIHdvcmxk\r\n";
}

std::string repeated(const std::string& text, int times) {
    std::string out;
    for (int i = 0; i < times; ++i) out += text;
    return out;
}

/// Lines of the given lengths, of letters that Base64 takes.
std::string lines_of(const std::vector<std::size_t>& lengths) {
    std::string out;
    for (const std::size_t length : lengths) out += std::string(length, 'A') + "\r\n";
    return out;
}

class Triage : public testing::Test {
  protected:
    /// Runs `undec` on the file `name`; returns whether it ended the process.
    bool decode(const std::string& name) {
        path = dir.path(name);
        program.session.SelectedDir = files::dir_of(path);
        return tests::ends_process([&] { undec(program.context, path); });
    }

    bool gave_up() { return program.windows.loaded<Form3>() != nullptr; }
    bool asks_for_name() { return program.windows.loaded<Form4>() != nullptr; }

    tests::TemporaryDirectory dir;
    tests::Program program;
    shell::swit& w = program.main_window;
    std::string path;
};

TEST_F(Triage, AMessageIsDecodedIntoItsOwnDirectory) {
    dir.write("sub/a.mim", message_with("hello.txt"));
    EXPECT_FALSE(decode("sub/a.mim"));
    EXPECT_EQ(dir.read("sub/hello.txt"), "hello, world");
    EXPECT_EQ(w.List3.items(), Names{"hello.txt"});
    EXPECT_TRUE(w.Picture2.visible);
    EXPECT_EQ(files::current_directory(), dir.path("sub"));
    EXPECT_EQ(program.session.EncodedPath, dir.path("sub/a.mim"));
    EXPECT_EQ(dir.read("sub/a.mim"), message_with("hello.txt"));
}

TEST_F(Triage, ARunClosesTheWindowsThatAskAboutAnEarlierFile) {
    program.windows.load<Form3>();
    program.windows.load<Form4>().Frame1.visible = true;
    dir.write("a.mim", message_with("hello.txt"));
    EXPECT_FALSE(decode("a.mim"));
    EXPECT_FALSE(gave_up() || asks_for_name());

    program.windows.load<Form4>().Frame2.visible = true;  // at work for something else
    EXPECT_FALSE(decode("a.mim"));
    EXPECT_TRUE(asks_for_name());
}

struct Picture {
    const char* name;
    const char* opened;
};

TEST_F(Triage, AJpegIsOpenedUnderANameThatSaysSo) {
    for (const auto& [name, opened] : {Picture{"photo.mim", "photo.mim.jpg"}, Picture{"photo", "photo.jpg"},
                                       Picture{"x.jpeg", "x.jpeg"}, Picture{"x.JPG", "x.JPG"}}) {
        program.platform.opened.clear();
        dir.write(name, "\xFF\xD8\xFF=ybegin line=128\r\n");
        EXPECT_TRUE(decode(name));
        EXPECT_EQ(program.platform.opened, Names{dir.path(opened)});
        EXPECT_EQ(path, dir.path(opened));
        EXPECT_TRUE(dir.has(opened));
    }
    EXPECT_FALSE(dir.has("photo.mim"));
}

TEST_F(Triage, AJpegTakesNoOtherFilesName) {
    dir.write("photo", "\xFF\xD8\xFF");
    dir.write("photo.jpg", "another");
    EXPECT_TRUE(decode("photo"));
    EXPECT_EQ(dir.read("photo.jpg"), "another");
    EXPECT_EQ(dir.read("photo (2).jpg"), "\xFF\xD8\xFF");
    EXPECT_EQ(program.platform.opened, Names{dir.path("photo (2).jpg")});
}

TEST_F(Triage, WhatIsNoJpegKeepsItsName) {
    dir.write("song.mp3", "\xFF\xFB\x90\x64 sound");
    dir.write("text.txt", "\xFF\xFEt\0e\0x\0t\0");
    for (const char* name : {"song.mp3", "text.txt"}) EXPECT_FALSE(decode(name)) << name;
    EXPECT_TRUE(dir.has("song.mp3") && dir.has("text.txt"));
    EXPECT_EQ(program.platform.opened, Names{});
}

/// A yEnc post of the bytes "hi" behind `ahead`.
std::string yenc_behind(const std::string& ahead) {
    return ahead + "=ybegin line=128 size=2 name=hi.txt\r\n\x92\x93\r\n=yend size=2\r\n";
}

TEST_F(Triage, YencIsSeenWithinFiftyFields) {
    dir.write("a.ync", yenc_behind(repeated("a line\r\n", 49)));
    decode("a.ync");
    EXPECT_EQ(dir.read("hi.txt"), "hi");
    EXPECT_EQ(w.List3.items(), Names{"hi.txt"});
    EXPECT_EQ(program.session.YencName, "hi.txt");
}

TEST_F(Triage, FieldsAreCountedNotLines) {
    dir.write("a.ync", yenc_behind(repeated("a, b\r\n", 25)));
    decode("a.ync");
    EXPECT_EQ(program.session.YencName, "");
}

struct Lengths {
    std::vector<std::size_t> of_lines;
    bool headerless;
};

TEST_F(Triage, FourEvenLinesOfMoreThan55GoToNohead) {
    const std::vector<Lengths> cases = {{{56, 56, 56, 56}, true},  {{55, 55, 55, 55}, false}, {{61, 60, 60, 60}, true},
                                        {{56, 55, 55, 55}, true},  {{60, 61, 61, 61}, false}, {{62, 60, 60, 60}, false},
                                        {{60, 60, 60, 59}, false}, {{60, 60, 60}, false}};
    for (const Lengths& lengths : cases) {
        tests::Program fresh;
        dir.write("even", lines_of(lengths.of_lines) + lines_of({7}));
        std::string file = dir.path("even");
        undec(fresh.context, file);
        EXPECT_EQ(fresh.windows.loaded<Form4>() != nullptr, lengths.headerless) << lengths.of_lines[0];
        EXPECT_EQ(fresh.session.NamingTaken, lengths.headerless);
    }
}

TEST_F(Triage, AHeaderlessFileWithATellingNameGoesOnAsItsHeaderedCopy) {
    dir.write("hello.txt", lines_of({76, 76, 76, 76}));
    program.platform.expect_question("create a new file of it called 1hello.txt", true);
    EXPECT_FALSE(decode("hello.txt"));
    EXPECT_EQ(program.session.EncodedPath, dir.path("1hello.txt"));
    EXPECT_EQ(path, dir.path("1hello.txt"));
    EXPECT_EQ(w.List3.items(), Names{"hello (2).txt"}) << "the copy itself is no result";
}

TEST_F(Triage, ARunEndsWhereTheNamingWindowHasOnceTakenOver) {
    program.session.NamingTaken = true;
    dir.write("hello.txt", lines_of({76, 76, 76, 76}));
    program.platform.expect_question("1hello.txt", true);
    decode("hello.txt");
    EXPECT_TRUE(w.List3.items().empty());
}

TEST_F(Triage, TrailingBlanksOnTheFirstThreeLinesCostEveryLineItsLastTwoCharacters) {
    dir.write("a.mim", "From: a  \r\nTo: b  \r\nSubject: c  \r\n\r\nx\r\nonly \r\nkeep me  \r\n");
    decode("a.mim");
    EXPECT_EQ(dir.read("a.mim"), "From: a\r\nTo: b\r\nSubject: c\r\nonl\r\nkeep me\r\n");
    EXPECT_FALSE(dir.has("zyxtemp.xyz"));
}

TEST_F(Triage, TrailingBlanksOnTwoLinesChangeNothing) {
    const std::string text = "From: a  \r\nTo: b  \r\nSubject: c\r\n\r\nx\r\n";
    dir.write("a.mim", text);
    decode("a.mim");
    EXPECT_EQ(dir.read("a.mim"), text);
}

TEST_F(Triage, OneTagAtALineEndTakesAllOfThemAway) {
    dir.write("a.mim", "one\r\ntwo\r\nthree<BR>\r\n<BR>\r\nfour<br>\r\n<BR>five\r\nsix<BR>\r\n");
    decode("a.mim");
    EXPECT_EQ(dir.read("a.mim"), "one\r\ntwo\r\nthree\r\n\r\nfour<br>\r\n<BR>five\r\nsix\r\n");
}

TEST_F(Triage, ATagOnTheFourthLineChangesNothing) {
    const std::string text = "one\r\ntwo\r\nthree\r\nfour<BR>\r\n";
    dir.write("a.mim", text);
    decode("a.mim");
    EXPECT_EQ(dir.read("a.mim"), text);
}

TEST_F(Triage, UnixTextIsReadAsThoughItHadBothLineEnds) {
    dir.write("a.mim", "one<BR>\ntwo\n");
    decode("a.mim");
    EXPECT_EQ(dir.read("a.mim"), "one\r\ntwo\r\n");
}

/// A header line of `length` characters.
std::string long_header(std::size_t length) {
    std::string line = "Content-Transfer-Encoding: base64; name=";
    return line + std::string(length - line.size(), 'n') + "\r\n";
}

TEST_F(Triage, ALongHeaderRaisesTheQuestionAndYesEndsTheProcess) {
    dir.write("a.mim", long_header(70) + repeated("x\r\n", 4) + long_header(71));
    program.platform.expect_question("suspiciously long file name", true);
    EXPECT_TRUE(decode("a.mim"));
}

TEST_F(Triage, NoGoesOnWithTheNextLongHeader) {
    dir.write("a.mim", long_header(71) + repeated("x\r\n", 4) + "CONTENT-TRANSFer" + std::string(60, 'n') + "\r\n");
    program.platform.expect_question("suspiciously long file name", false);
    program.platform.expect_question("suspiciously long file name", false);
    EXPECT_FALSE(decode("a.mim"));
}

/// A MIME part whose fourth field behind the encoding has `length` characters.
std::string part_with_field(std::size_t length) {
    return "Content-Transfer-Encoding: x\r\nContent-Disposition: inline\r\nsecond\r\nthird\r\n" +
           std::string(length, 'f') + "\r\n";
}

constexpr auto part_rewritten = "Content-Transfer-Encoding: x\r\nsecond\r\nthird\r\n";

TEST_F(Triage, TwoPartsWithSixtyCharactersTurnFieldsIntoLines) {
    const std::string body(60, 'f');
    dir.write("a.mim", part_with_field(60) + "one, \"two, three\" x\r\n" + part_with_field(60));
    decode("a.mim");
    EXPECT_EQ(dir.read("a.mim"), part_rewritten + body + "\r\none\r\ntwo, three\r\n" + part_rewritten + body + "\r\n");
    EXPECT_FALSE(dir.has("tempz.txt"));
}

TEST_F(Triage, OnePartOrPartsOfAnotherLengthLeaveTheFileAlone) {
    for (const std::string& text : {part_with_field(60), part_with_field(59) + part_with_field(61)}) {
        tests::Program fresh;
        std::string file = dir.write("a.mim", text);
        undec(fresh.context, file);
        EXPECT_EQ(dir.read("a.mim"), text);
    }
}

TEST_F(Triage, PartsAreCountedOverTheRunsOfAProcess) {
    dir.write("a.mim", part_with_field(60));
    dir.write("b.mim", part_with_field(60));
    const std::string without_parts = dir.read(dir.write("c.uue", "x, y\r\n").substr(dir.path().size() + 1));
    decode("a.mim");
    decode("b.mim");
    decode("c.uue");
    EXPECT_EQ(dir.read("a.mim"), part_with_field(60));
    EXPECT_EQ(dir.read("b.mim"), part_rewritten + std::string(60, 'f') + "\r\n");
    EXPECT_EQ(dir.read("c.uue"), without_parts) << "what has no such part gains nothing by being rewritten";
}

TEST_F(Triage, WhatCannotBeReadOrIsEmptyEndsInTheGuide) {
    dir.write("empty.mim", "");
    EXPECT_FALSE(decode("empty.mim"));
    EXPECT_TRUE(gave_up());
    EXPECT_EQ(dir.names(), Names{"empty.mim"});

    tests::Program fresh;
    std::string gone = dir.path("gone.mim");
    undec(fresh.context, gone);
    EXPECT_NE(fresh.windows.loaded<Form3>(), nullptr);
    EXPECT_EQ(dir.names(), Names{"empty.mim"});
}

TEST(TriageRewrites, StopWhereNoMoreIsWanted) {
    for (const auto& rewrite : {drop_two_characters_a_line, drop_tags_at_line_ends, fields_without_dispositions}) {
        int pieces = 0;
        rewrite("line one\r\nline two\r\nline three\r\n", [&](std::string_view) { return ++pieces < 3; });
        EXPECT_EQ(pieces, 3);
    }
}

}  // namespace
}  // namespace quill::decoder
