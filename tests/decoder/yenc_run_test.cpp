#include "decoder/yenc_run.h"

#include "codec/recovery/disguise.h"
#include "decoder/repair_guide.h"
#include "decoder/results.h"
#include "files/directory.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

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
        program.session.EncodedPath = path;
        w.File2.set_directory(dir.path());
        w.File3.set_directory(dir.path());
        findfirst(program.context, path);
    }

    /// Returns the record of the first row called `name`.
    ResultRow row(const std::string& name) const {
        const auto& items = w.List3.items();
        const auto found = std::find(items.begin(), items.end(), name);
        EXPECT_NE(found, items.end()) << name;
        return found == items.end() ? ResultRow{} : result_row(w, static_cast<std::size_t>(found - items.begin()));
    }
    std::optional<codec::Verdict> verdict(const std::string& name) const { return row(name).verdict; }

    tests::TemporaryDirectory dir;
    tests::Program program;
    shell::swit& w = program.main_window;
};

std::string post(const std::string& name, const std::string& data, const std::string& ahead = {}) {
    return ahead + "=ybegin line=128 size=3 name=" + name + "\r\n" + data + "\r\n=yend size=3\r\n";
}

/// Returns part `number` of three, each of three bytes, of a file of nine.
std::string part(int number, const std::string& data) {
    const std::string n = std::to_string(number);
    return "=ybegin part=" + n +
           " total=3 line=128 size=9 name=a.bin\r\n=ypart begin=" + std::to_string(number * 3 - 2) +
           " end=" + std::to_string(number * 3) + "\r\n" + data + "\r\n=yend size=3 part=" + n + "\r\n";
}

TEST_F(YencRun, AnOutputIsListedAndThePanelOpensAndTheLineNamesTheInput) {
    decode(post("a.bin", "klm", "Some words, and more\r\n"));
    EXPECT_EQ(dir.read("a.bin"), "ABC");
    EXPECT_THAT(w.List3.items(), ElementsAre("a.bin"));
    EXPECT_EQ(w.List3.selected_item(), "a.bin");
    EXPECT_TRUE(w.Picture2.visible);
    EXPECT_FALSE(w.Picture5.visible);
    EXPECT_EQ(w.Label3.text, dir.path("input"));
    EXPECT_EQ(verdict("a.bin"), codec::Verdict::verified);
}

TEST_F(YencRun, EveryPostOfATextComesOutAndItsPartsAreJoined) {
    decode(post("x.bin", "klm") + part(2, "nop") + "words between them\r\n" + part(1, "klm") + post("y.bin", "qrs") +
           part(3, "qrs") + "begin 644 u.bin\r\n#86)C\r\n`\r\nend\r\n");
    EXPECT_THAT(w.List3.items(), ElementsAre("a.bin", "u.bin", "x.bin", "y.bin"));
    EXPECT_EQ(dir.read("a.bin"), "ABCDEFGHI");
    EXPECT_EQ(verdict("a.bin"), codec::Verdict::verified);
    EXPECT_EQ(dir.read("u.bin"), "abc");
    EXPECT_EQ(dir.read("y.bin"), "GHI");
}

TEST_F(YencRun, NoFileIsReplacedByEitherDecoder) {
    for (const char* command_line : {"", "&"}) {
        SCOPED_TRACE(command_line);
        tests::TemporaryDirectory here;
        tests::Program fresh;
        fresh.session.CommandLine = command_line;
        here.write("a.bin", "mine");
        for (const auto& [file, text] : {std::pair{"1.ync", part(1, "klm")}, {"2.ync", part(2, "nop")}}) {
            std::string path = here.write(file, text);
            fresh.main_window.File2.set_directory(here.path());
            fresh.main_window.File3.set_directory(here.path());
            findfirst(fresh.context, path);
        }
        EXPECT_EQ(here.read("a.bin"), "mine");
        EXPECT_EQ(here.read("a (2).bin"), "ABC");
        EXPECT_EQ(here.read("a (3).bin"), "DEF");
        EXPECT_THAT(fresh.main_window.List3.items(), ElementsAre("a (2).bin", "a (3).bin"));
        EXPECT_EQ(result_row(fresh.main_window, 0).verdict, codec::Verdict::incomplete);
    }
}

TEST_F(YencRun, TheInputIsNotReplacedByItsOwnOutput) {
    const std::string text = post("input", "klm");
    decode(text);
    EXPECT_EQ(dir.read("input"), text);
    EXPECT_EQ(dir.read("input (2)"), "ABC");
}

struct Dots {
    std::string ahead;
    const char* command_line;
    bool undone;
};

TEST_F(YencRun, DoubledDotsCountOnceAfterCertainNewsreadersOrOnDemand) {
    const std::vector<Dots> cases = {{"X-Newsreader: Forte Agent 1.9", "", true},
                                     {"x-newsposter: YENC-POWER-Post", "", true},
                                     {"User-Agent: Thoth/1.5", "", true},
                                     {"X-Newsreader: thoth", "", false},
                                     {"User-Agent: forte agent", "", false},
                                     {"X-NewsReader:  forte agent", "", false},
                                     {"words", "&", true}};
    for (const Dots& c : cases) {
        program.session.CommandLine = c.command_line;
        decode(c.ahead + "\r\n=ybegin line=128 name=a.bin\r\n..k\r\n=yend\r\nUser-Agent: Thoth\r\n");
        EXPECT_EQ(dir.read("a.bin"), c.undone ? "\x04"
                                                "A"
                                              : "\x04\x04"
                                                "A")
            << c.ahead;
        files::remove_file(dir.path("a.bin"));
    }
}

TEST_F(YencRun, ASizeThatAgreesSaysMoreThanTheNewsreader) {
    decode(post("a.bin", "..k", "User-Agent: Thoth/1.5\r\n"));
    EXPECT_EQ(dir.read("a.bin"),
              "\x04\x04"
              "A");
    EXPECT_EQ(verdict("a.bin"), codec::Verdict::verified);
}

TEST_F(YencRun, AProgramInDisguiseIsListedUnderANameThatShowsIt) {
    decode(post("cat.jpg      .exe", "klm"));
    EXPECT_EQ(dir.read("cat.jpg .exe"), "ABC");
    ASSERT_EQ(row("cat.jpg .exe").problems.size(), 1U);
    EXPECT_EQ(row("cat.jpg .exe").problems[0].kind, codec::ProblemKind::disguised_name);
}

TEST_F(YencRun, WhatAPostStatesIsCheckedAgainstTheResult) {
    decode(
        "=ybegin line=128 size=3 name=a\r\nklm\r\n=yend size=3 crc32=00000000\r\n"
        "=ybegin line=128 size=3 name=b\r\nklm\r\n");
    EXPECT_EQ(verdict("a"), codec::Verdict::damaged);
    EXPECT_EQ(verdict("b"), codec::Verdict::incomplete);
    decode(part(2, "klm"));
    EXPECT_EQ(verdict("a.bin"), codec::Verdict::incomplete);
}

TEST_F(YencRun, TheBarGoesByTheInputAndAStopLeavesNothing) {
    std::vector<int> lefts;
    const std::string text =
        "=ybegin line=128 size=9000000 name=a\r\n" + std::string(9'000'000, 'k') + "\r\n=yend size=9000000\r\n";
    program.platform.on_repaint = [&](controls::Window&) {
        if (w.doing.text.starts_with("Decoding")) lefts.push_back(w.Picture6.left);
    };
    decode(text);
    ASSERT_GT(lefts.size(), 2U);
    EXPECT_TRUE(std::is_sorted(lefts.begin(), lefts.end()));
    EXPECT_GT(lefts.back(), w.Picture5.width / 2);
    EXPECT_LE(lefts.back(), w.Picture5.width);
    files::remove_file(dir.path("a"));

    program.platform.on_repaint = [&](controls::Window&) {
        if (w.Picture6.left > w.Picture5.width / 2 && w.doing.text.starts_with("Decoding")) controls::run(w.stop.click);
    };
    decode(text);
    EXPECT_THAT(dir.names(), ElementsAre("input"));
    EXPECT_FALSE(w.stop.visible || w.Picture5.visible);
}

TEST_F(YencRun, AHeaderWithoutDataEndsInTheGuide) {
    decode("a, =ybegin line=128 size=3 name=a\r\nwords\r\n");
    EXPECT_NE(program.windows.loaded<Form3>(), nullptr);
    EXPECT_THAT(dir.names(), ElementsAre("input"));
}

TEST_F(YencRun, AMisnamedSnapshotBecomesAPictureAndKeepsItsVerdict) {
    dir.write("snapshot-fa1.jpg", "");
    decode(post("snapshot-fa", "klm"));
    EXPECT_THAT(w.List3.items(), ElementsAre("snapshot-fa2.jpg"));
    EXPECT_EQ(dir.read("snapshot-fa2.jpg"), "ABC");
    EXPECT_EQ(dir.read("snapshot-fa1.jpg"), "");
    EXPECT_EQ(verdict("snapshot-fa2.jpg"), codec::Verdict::verified);
}

}  // namespace
}  // namespace quill::decoder
