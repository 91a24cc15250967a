#include "decoder/yenc_run.h"

#include "codec/disguise.h"
#include "files/directory.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::decoder {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The program in an empty directory, with a text in a file selected.
class YencRun : public testing::Test {
  protected:
    /// Runs `findfirst` on `text`, as the triage would with a snapshot of the directory taken.
    void decode(const std::string& text, const std::string& file = "input") {
        std::string path = dir.write(file, text);
        program.session.SelectedDir = dir.path();
        program.session.SelectedFile = file;
        w.File2.set_directory(dir.path());
        w.File3.set_directory(dir.path());
        findfirst(program.context, path);
    }

    codec::Verdict verdict(const std::string& name) const {
        const auto known = w.Outcomes.find(name);
        EXPECT_NE(known, w.Outcomes.end()) << name;
        return known == w.Outcomes.end() ? codec::Verdict::incomplete : known->second.verdict;
    }

    tests::TemporaryDirectory dir;
    tests::Program program;
    shell::swit& w = program.main_window;
};

std::string post(const std::string& name, const std::string& data, const std::string& ahead = {}) {
    return ahead + "=ybegin line=128 size=3 name=" + name + "\r\n" + data + "\r\n=yend size=3\r\n";
}

TEST_F(YencRun, AnOutputIsListedAndThePanelOpens) {
    decode(post("a.bin", "klm", "Some words, and more\r\n"));
    EXPECT_EQ(dir.read("a.bin"), "ABC");
    EXPECT_EQ(program.session.YencName, "a.bin");
    EXPECT_EQ(program.session.DataStart, 22 + 36);
    EXPECT_THAT(w.List3.items(), ElementsAre("a.bin"));
    EXPECT_TRUE(w.Picture2.visible);
    EXPECT_FALSE(w.Picture5.visible);
    EXPECT_EQ(w.Label3.text, "77");
    EXPECT_EQ(verdict("a.bin"), codec::Verdict::verified);
}

TEST_F(YencRun, TheBytesFollowTheRulesWhateverIsOdd) {
    struct Case {
        std::string data, plain, dotted;
    };
    const std::vector<Case> cases = {
        {"=@=J=M=}", "\xd6\xe0\xe3\x13", ""},
        {"*)", std::string("\0\xff", 2), ""},
        {"k  \r\nl \r\nm",
         "AB\xf6"
         "C",
         ""},  // two blanks before a line end are none, one is data
        {"k\rl\nm",
         "A\xe3"
         "B\xe0"
         "C",
         ""},                                                       // lone CR, lone LF
        {"=yfoo=yex", "\x4f\x4f\x3c\x45\x45\x4f\x4f\x3b\x4e", ""},  // "=y" that ends nothing
        {"..k\r\n..l\r\n.m",
         "\x04\x04"
         "A\x04\x04"
         "B\x04"
         "C",
         "\x04"
         "A\x04"
         "B\x04"
         "C"},
    };
    for (const Case& c : cases) {
        program.session.CommandLine = "";
        decode(post("plain", c.data));
        EXPECT_EQ(dir.read("plain"), c.plain) << c.data;
        program.session.CommandLine = "&";
        decode(post("dotted", c.data));
        EXPECT_EQ(dir.read(program.session.YencName), c.dotted.empty() ? c.plain : c.dotted) << c.data;
        files::remove_file(program.session.YencName);
        dir.write(program.session.YencName, "");
    }
}

TEST_F(YencRun, UnixTextIsReadAsThoughItsLinesEndedInCrLf) {
    decode("words\n=ybegin line=128 size=3 name=a\n=ypart begin=1 end=3\nkl  \n..m\n=yend size=3\n");
    EXPECT_EQ(dir.read("a"),
              "AB\x04\x04"
              "C");
    EXPECT_EQ(program.session.DataStart, 7 + 32 + 22);
    EXPECT_EQ(verdict("a"), codec::Verdict::damaged) << "its trailer was read: three bytes are stated";
}

TEST_F(YencRun, LongTextsComeOutTheSameWithAnyLineEnds) {
    std::string lines;
    std::string expected;
    for (int i = 0; i < 40'000; ++i) {
        lines += i % 7 == 0 ? "==" : "k";
        expected += i % 7 == 0 ? "\xd3" : "A";
        if (i % 5 == 0) lines += "\n";
    }
    for (const bool unix_text : {true, false}) {
        std::string text = "=ybegin line=128 size=40000 name=a\n" + lines + "\n=yend size=40000\n";
        if (!unix_text) {
            for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) text.insert(at, "\r");
        }
        decode(text);
        EXPECT_TRUE(dir.read("a") == expected);
        EXPECT_EQ(verdict("a"), codec::Verdict::verified);
    }
}

TEST_F(YencRun, ANewsreaderThatDoublesDotsIsKnownByItsLine) {
    const std::vector<std::pair<std::string, bool>> lines = {
        {"X-Newsreader: Forte Agent 1.9", true},
        {"x-newsposter: YENC-POWER-Post", true},
        {"X-Newsposter: yEnc-PowerPost 11", true},
        {"User-Agent: Thoth/1.5", true},
        {"X-Newsreader: thoth", false},
        {"User-Agent: forte agent", false},
        {"X-NewsReader:  forte agent", false},
    };
    for (const auto& [line, dotted] : lines) {
        decode(post("a", "..k", line + "\r\n"));
        const std::string bytes = dir.read(program.session.YencName);
        EXPECT_EQ(bytes, dotted ? "\x04"
                                  "A"
                                : "\x04\x04"
                                  "A")
            << line;
        files::remove_file(program.session.YencName);
    }
}

TEST_F(YencRun, OnlyLinesAheadOfTheHeaderTell) {
    decode("=ybegin line=128 size=3 name=a\r\n=ypart begin=1 end=3\r\n..k\r\nUser-Agent: Thoth\r\n");
    EXPECT_EQ(dir.read("a").substr(0, 3),
              "\x04\x04"
              "A");
}

TEST_F(YencRun, TheNameIsWhatStandsBehindTheLastEqualsSign) {
    decode(post("a=b c.bin  ", "klm"));
    EXPECT_EQ(dir.read("b c.bin"), "ABC");
    decode(post("../../etc/x=..\\y.bin", "klm"));
    EXPECT_EQ(dir.read("y.bin"), "ABC");
}

TEST_F(YencRun, AProgramInDisguiseIsToldOfUnderANameThatShowsIt) {
    decode(post("cat.jpg      .exe", "klm"));
    EXPECT_EQ(dir.read("cat.jpg .exe"), "ABC");
    EXPECT_EQ(verdict("cat.jpg .exe"), codec::Verdict::verified);
    ASSERT_EQ(w.Outcomes.at("cat.jpg .exe").problems.size(), 1U);
    EXPECT_EQ(w.Outcomes.at("cat.jpg .exe").problems[0].kind, codec::disguised_name);
}

TEST_F(YencRun, AnOlderOutputIsReplacedAndCountsAsNew) {
    dir.write("a.bin", "something older");
    decode(post("a.bin", "klm"));
    EXPECT_EQ(dir.read("a.bin"), "ABC");
    EXPECT_THAT(w.List3.items(), ElementsAre("a.bin"));
}

TEST_F(YencRun, TheInputIsNotReplacedByItsOwnOutput) {
    const std::string text = post("input", "klm");
    decode(text, "input");
    EXPECT_EQ(dir.read("input"), text);
    EXPECT_EQ(dir.read("input (2)"), "ABC");
    std::filesystem::create_symlink("input", "link");
    decode(post("link", "klm"), "input");
    EXPECT_EQ(dir.read("input"), post("link", "klm"));
}

TEST_F(YencRun, WithDotsUndoneWhatHasContentKeepsItsName) {
    program.session.CommandLine = "&";
    dir.write("photo.jpg", "mine");
    decode(post("photo.jpg", "klm"));
    EXPECT_EQ(dir.read("photo.jpg"), "mine");
    EXPECT_EQ(dir.read("photo-a.jpg"), "ABC");
    decode(post("photo.jpg", "klm"));
    EXPECT_TRUE(dir.has("photo-a-a.jpg"));
    dir.write("a.jpeg", "mine");
    decode(post("a.jpeg", "klm"));
    EXPECT_TRUE(dir.has("a-ajpeg"));
    dir.write("readme", "mine");
    decode(post("readme", "klm"));
    EXPECT_TRUE(dir.has("readme-a"));
    EXPECT_THAT(w.List3.items(), ElementsAre("photo-a.jpg", "photo-a-a.jpg", "a-ajpeg", "readme-a"));
}

TEST_F(YencRun, AnEmptyFileOfTheNameIsFilledAndIsNotNew) {
    program.session.CommandLine = "&";
    dir.write("a.bin", "");
    decode(post("a.bin", "klm"));
    EXPECT_EQ(dir.read("a.bin"), "ABC");
    EXPECT_THAT(w.List3.items(), IsEmpty());
    EXPECT_TRUE(w.Picture5.visible) << "the bar stays where nothing is new";
}

TEST_F(YencRun, AnOutputThatCannotBeWrittenYieldsNothing) {
    dir.make_directory("a.bin");
    decode(post("a.bin", "klm"));
    EXPECT_THAT(w.List3.items(), IsEmpty());
    EXPECT_THAT(dir.names(), ElementsAre("a.bin", "input"));
}

TEST_F(YencRun, WithoutAHeaderLineNothingIsDecoded) {
    decode("a, =ybegin line=128 size=3 name=a\r\nklm\r\n");
    EXPECT_THAT(dir.names(), ElementsAre("input"));
}

TEST_F(YencRun, TheBarGoesByTheInputsLength) {
    std::vector<int> lefts;
    program.platform.on_repaint = [&](controls::Window&) {
        if (w.Picture5.visible) lefts.push_back(w.Picture6.left);
    };
    const std::string head = "=ybegin line=128 size=600000 name=a\r\n";
    decode(head + std::string(600'000, 'k') + "\r\n=yend size=600000\r\n");
    ASSERT_GT(lefts.size(), 2U);
    EXPECT_EQ(lefts.front(), 0);
    EXPECT_TRUE(std::is_sorted(lefts.begin(), lefts.end()));
    EXPECT_GT(lefts.back(), 5055 / 2);
    EXPECT_LE(lefts.back(), 5055);
}

TEST_F(YencRun, WhatAPostStatesIsHeldAgainstTheResult) {
    decode("=ybegin line=128 size=3 name=a\r\nklm\r\n=yend size=3 crc32=00000000\r\n");
    EXPECT_EQ(verdict("a"), codec::Verdict::damaged);
    decode("=ybegin line=128 size=3 name=b\r\nklm\r\n");
    EXPECT_EQ(verdict("b"), codec::Verdict::incomplete);
    decode("=ybegin part=2 total=3 line=128 size=9 name=c\r\n=ypart begin=4 end=6\r\nklm\r\n=yend size=3 part=2\r\n");
    EXPECT_EQ(verdict("c"), codec::Verdict::incomplete);
    EXPECT_EQ(dir.read("c"), "ABC") << "whatever the verdict";
}

TEST_F(YencRun, AMisnamedSnapshotBecomesAPictureAndKeepsItsVerdict) {
    dir.write("snapshot-fa1.jpg", "taken");
    decode(post("snapshot-fa", "klm"));
    EXPECT_THAT(w.List3.items(), ElementsAre("snapshot-fa2.jpg"));
    EXPECT_EQ(dir.read("snapshot-fa2.jpg"), "ABC");
    EXPECT_EQ(verdict("snapshot-fa2.jpg"), codec::Verdict::verified);
}

}  // namespace
}  // namespace quill::decoder
