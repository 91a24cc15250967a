#include "decoder/library_run.h"

#include "decoder/normalise.h"
#include "decoder/repair_guide.h"
#include "decoder/results.h"
#include "decoder/triage.h"
#include "files/directory.h"
#include "support/abandoned_file.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace quill::decoder {
namespace {

using Names = std::vector<std::string>;

/// Returns a MIME part of the bytes "hello, world" under `name`.
std::string part(const std::string& name) {
    return "--x\r\nContent-Type: application/octet-stream\r\nContent-Transfer-Encoding: base64\r\n"
           "Content-Disposition: attachment; filename=\"" +
           name + "\"\r\n\r\naGVsbG8sIHdvcmxk\r\n";
}

std::string message(const std::vector<std::string>& names) {
    std::string text = "MIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=x\r\n\r\n";
    for (const std::string& name : names) text += part(name);
    return text + "--x--\r\n";
}

constexpr auto undecodable = "Dear all\r\nnothing here\r\nis encoded\r\nat all\r\n";

class LibraryRun : public testing::Test {
  protected:
    void decode(const std::string& name) {
        std::string path = dir.path(name);
        undec(program.context, path);
    }
    bool gave_up() { return program.windows.loaded<Form3>() != nullptr; }

    tests::TemporaryDirectory dir;
    tests::Program program;
    shell::swit& w = program.main_window;
};

TEST_F(LibraryRun, NewFilesAreListedWithWhatIsKnownOfThem) {
    dir.write("a.mim", message({"b.bin", "a.bin"}));
    w.Label3.text = "a.mim";
    decode("a.mim");
    EXPECT_EQ(w.List3.items(), (Names{"a.bin", "b.bin"}));
    EXPECT_EQ(w.Label3.text, "");
    EXPECT_FALSE(w.Picture5.visible);
    EXPECT_TRUE(w.Picture2.visible && w.Picture1.visible);
    EXPECT_EQ(w.pointer, controls::MousePointer::normal);
    const ResultRow row = result_row(w, 0);
    EXPECT_EQ(row.size, 12U);
    EXPECT_EQ(row.verdict, codec::Verdict::whole);
}

TEST_F(LibraryRun, EqualNamesAndNamesThatAreTakenLoseNothing) {
    dir.write("a.bin", "mine");
    dir.write("a.mim", message({"a.bin", "a.bin"}));
    decode("a.mim");
    EXPECT_EQ(dir.read("a.bin"), "mine");
    EXPECT_EQ(w.List3.items(), (Names{"a (2).bin", "a (3).bin"}));
    EXPECT_EQ(dir.read("a (3).bin"), "hello, world");
}

TEST_F(LibraryRun, WhatAKillLeftIsRemoved) {
    const std::string left = tests::write_abandoned(dir);
    dir.write("a.mim", message({"a.bin"}));
    decode("a.mim");
    EXPECT_FALSE(dir.has(left));
}

TEST_F(LibraryRun, ANameWithASemicolonIsOneName) {
    dir.write("a.mim", message({"one;two.bin"}));
    decode("a.mim");
    ASSERT_EQ(w.List3.count(), 1U);
    EXPECT_EQ(dir.read(w.List3.items()[0]), "hello, world");
}

TEST_F(LibraryRun, ResultsGatherOverTheRunsOfAProcess) {
    dir.write("a.mim", message({"a.bin"}));
    decode("a.mim");
    decode("a.mim");
    EXPECT_EQ(w.List3.items(), (Names{"a.bin", "a (2).bin"}));
    EXPECT_EQ(w.List3.selected_item(), "a (2).bin");
}

TEST_F(LibraryRun, TheFirstNewRowIsSelectedAndItsButtonsWakeUp) {
    w.Command5.enabled = w.Command7.enabled = w.Command8.enabled = false;
    dir.write("a.mim", message({"c.bin", "b.bin"}));
    decode("a.mim");
    EXPECT_EQ(w.List3.selected_item(), "b.bin");
    EXPECT_TRUE(w.Command5.enabled && w.Command7.enabled && w.Command8.enabled);
    dir.write("b.mim", message({"d.bin", "a.bin"}));
    decode("b.mim");
    EXPECT_EQ(w.List3.selected, 2U);
    EXPECT_EQ(w.List3.selected_item(), "a.bin");
}

TEST_F(LibraryRun, FilesThatOtherProgramsRemoveMeanwhileHideNoResult) {
    for (const char* name : {"x", "y"}) dir.write(name, "another program's");
    dir.write("a.mim", message({"a.bin", "b.bin"}));
    program.platform.on_repaint = [&](controls::Window&) {
        for (const char* name : {"x", "y"}) files::remove_file(dir.path(name));
    };
    decode("a.mim");
    EXPECT_EQ(w.List3.items(), (Names{"a.bin", "b.bin"}));
}

TEST_F(LibraryRun, AVerdictStaysWithItsFileWhateverElseHasItsName) {
    dir.write("one/a.uue", "begin 644 a.bin\n#86)C\n");
    dir.write("two/a.mim", message({"a.bin"}));
    for (const char* name : {"one/a.uue", "two/a.mim"}) decode(name);
    ASSERT_EQ(w.List3.items(), (Names{"a.bin", "a.bin"}));
    EXPECT_EQ(result_row(w, 0).verdict, codec::Verdict::incomplete);
    EXPECT_EQ(result_row(w, 1).verdict, codec::Verdict::whole);
    replace_result(w, 1, "b.bin");
    EXPECT_EQ(result_row(w, 0).verdict, codec::Verdict::incomplete);
    EXPECT_EQ(result_row(w, 1).verdict, codec::Verdict::whole);
    remove_result(w, 1);
    EXPECT_EQ(result_row(w, 0).verdict, codec::Verdict::incomplete);
}

TEST_F(LibraryRun, TheWorkFileIsNoResultWhateverItsCase) {
    program.session.SkipName = "a.bin";
    dir.write("a.mim", message({"A.BIN", "b.bin"}));
    decode("a.mim");
    EXPECT_EQ(w.List3.items(), Names{"b.bin"});
}

TEST_F(LibraryRun, AMisnamedSnapshotBecomesAPicture) {
    dir.write("snapshot-fabc1.jpg", "taken");
    dir.write("a.mim", message({"snapshot-fabc", "SNAPSHOT-F.JPG", "snapshot-f"}));
    decode("a.mim");
    EXPECT_TRUE(dir.has("snapshot-fabc2.jpg"));
    EXPECT_TRUE(dir.has("SNAPSHOT-F.JPG"));
    EXPECT_TRUE(dir.has("snapshot-f"));
    EXPECT_EQ(w.List3.items(), (Names{"snapshot-f", "SNAPSHOT-F.JPG", "snapshot-fabc2.jpg"}));
    EXPECT_EQ(result_row(w, 2).verdict, codec::Verdict::whole);
}

TEST_F(LibraryRun, AFailureOpensTheGuideAndLeavesTheWindowIdle) {
    dir.write("a.txt", undecodable);
    shell::show_file_captions(w, "a.txt");
    w.Picture2.visible = true;
    decode("a.txt");
    EXPECT_TRUE(gave_up());
    EXPECT_EQ(w.apt(1).text, "Select/Open/View a file");
    EXPECT_EQ(w.apt(2).text, "Create compressed or encoded file");
    EXPECT_FALSE(w.Picture2.visible);
    EXPECT_EQ(dir.names(), Names{"a.txt"});
    EXPECT_EQ(dir.read("a.txt"), undecodable);
}

TEST_F(LibraryRun, PassesAreCountedOverRunsUntilTheThird) {
    dir.write("a.txt", undecodable);
    decode("a.txt");
    EXPECT_EQ(program.session.DecodePass, 1);
    decode("a.txt");
    EXPECT_EQ(program.session.DecodePass, 2);
    decode("a.txt");
    EXPECT_EQ(program.session.DecodePass, 0);
    EXPECT_TRUE(gave_up());
}

TEST_F(LibraryRun, ATextWithAHeadIsTriedByItsTailAndThenGivenUp) {
    dir.write("a.txt", "one\r\ntwo\r\n\r\nfour\r\nfive\r\n");
    decode("a.txt");
    EXPECT_TRUE(gave_up());
    // The tail has no head itself, so its even copy was tried and the work files are removed.
    EXPECT_EQ(program.session.DecodePass, 2);
    EXPECT_EQ(dir.names(), Names{"a.txt"});
}

TEST_F(LibraryRun, NoWorkFileIsEverSeenAndFilesCalledLikeOneAreNotTouched) {
    const Names others = {"temp1.ntp", "temp2.ntp", "tempz.txt", "zyxtemp.xyz"};
    for (const std::string& name : others) dir.write(name, "mine");
    Names expected = others;
    expected.insert(expected.begin(), "a.txt");
    const Names texts = {"one\r\ntwo\r\n\r\nfour\r\nfive\r\n",       // decoded by its tail
                         "one\r\n\r\nthree\r\n\r\nfive\r\n",         // by the tail of its tail
                         "one<BR>\r\ntwo<BR>\r\n\r\nfour<BR>\r\n"};  // by a copy without tags
    program.platform.on_repaint = [&](controls::Window&) { EXPECT_EQ(dir.names(), expected); };
    for (const std::string& text : texts) {
        dir.write("a.txt", text);
        decode("a.txt");
        EXPECT_TRUE(gave_up());
        EXPECT_EQ(dir.names(), expected);
        EXPECT_EQ(dir.read("a.txt"), text);
    }
    for (const std::string& name : others) {
        EXPECT_EQ(dir.read(name), "mine");
        dir.write(name, texts[1]);
        decode(name);
        EXPECT_EQ(dir.read(name), texts[1]);
        dir.write(name, "mine");
    }
}

TEST_F(LibraryRun, AThirdPassReachedThroughTailsGivesUp) {
    dir.write("a.txt", "one\r\n\r\nthree\r\n\r\nfive\r\n");
    decode("a.txt");
    EXPECT_TRUE(gave_up());
    EXPECT_EQ(program.session.DecodePass, 0);
}

TEST_F(LibraryRun, FilesOfASecondTryAreNamedInMessages) {
    dir.write("a.mim", message({"b.bin", "a.bin"}));
    w.File2.set_directory(dir.path());
    w.File3.set_directory(dir.path());
    program.platform.expect_message("a.bin");
    program.platform.expect_message("b.bin");
    std::string path = dir.path("a.mim");
    // No blank line before the parts: the even copy is decoded.
    dir.write("a.mim", "begin 644 b.bin\r\n#86)C\r\n`\r\nend\r\nbegin 644 a.bin\r\n#86)C\r\n`\r\nend\r\n");
    undectwo(program.context, path);
    EXPECT_EQ(program.platform.messages, (Names{"a.bin", "b.bin"}));
    EXPECT_TRUE(w.List3.items().empty());
    EXPECT_FALSE(w.Picture2.visible);
    EXPECT_FALSE(gave_up());
    EXPECT_EQ(dir.names(), (Names{"a.bin", "a.mim", "b.bin"}));
    EXPECT_EQ(program.session.DecodePass, 1) << "a good pass does not reset the count";
}

TEST_F(LibraryRun, ManyFilesOfASecondTryAreNamedInOneMessage) {
    std::string parts;
    for (int i = 0; i < 50; ++i) parts += "begin 644 f" + std::to_string(i) + ".bin\r\n#86)C\r\n`\r\nend\r\n";
    std::string path = dir.write("a.mim", parts);
    w.File2.set_directory(dir.path());
    w.File3.set_directory(dir.path());
    program.platform.expect_message("50 files were decoded");
    undectwo(program.context, path);
    EXPECT_TRUE(dir.has("f49.bin"));
}

TEST_F(LibraryRun, ALongDispositionInTheTailRaisesTheQuestion) {
    dir.write("a.txt", "one\r\n\r\nthree\r\nContent-Disposition: " + std::string(50, 'n') + "\r\n");
    program.platform.expect_question("suspiciously long file name", true);
    EXPECT_TRUE(tests::ends_process([&] { decode("a.txt"); }));
}

constexpr auto yenc_post = "=ybegin line=128 size=3 name=a.bin\r\nklm\r\n=yend size=3\r\n";

TEST_F(LibraryRun, WhatCannotBeWrittenIsSaidOnceAndNothingElseIsTried) {
    program.platform.on_repaint = [](controls::Window&) { files::change_directory("/proc"); };
    for (const std::string& text : {message({"a.bin"}), message({"a.bin", "b.bin", "c.bin"}), std::string(yenc_post)}) {
        dir.write("a.mim", text);
        program.platform.expect_message("The file a.bin could not be written: ");
        decode("a.mim");
        EXPECT_FALSE(gave_up());
        EXPECT_EQ(program.session.DecodePass, 0);
        EXPECT_FALSE(w.Picture5.visible || w.stop.visible);
        EXPECT_EQ(w.pointer, controls::MousePointer::normal);
        EXPECT_EQ(dir.read("a.mim"), text);
        EXPECT_EQ(dir.names(), Names{"a.mim"});
    }
}

/// Returns a message with several attachments, one of them large.
std::string long_message() {
    std::string text = message({"a.bin", "b.bin"});
    const std::string row = std::string(76, 'A') + "\r\n";
    std::string rows;
    for (int i = 0; i < 40'000; ++i) rows += row;
    text.insert(text.rfind("aGVs"), rows);
    return text;
}

TEST_F(LibraryRun, AStopLeavesWhatIsWholeByThenAndNothingElse) {
    dir.write("a.mim", long_message());
    std::set<Names> left;
    bool pressed = true;
    for (int at = 1; pressed; ++at) {  // a Stop at each opportunity during the run
        ASSERT_LT(at, 1000);
        tests::Program fresh;
        shell::swit& main = fresh.main_window;
        pressed = false;
        int chances = 0;
        fresh.platform.on_repaint = [&](controls::Window&) {
            EXPECT_EQ(main.stop.visible, main.Picture5.visible);
            if (!main.stop.visible || ++chances != at) return;
            pressed = true;
            if (dir.has("a.bin")) fresh.platform.expect_message("Decoding was stopped");
            controls::run(main.stop.click);
        };
        std::string path = dir.path("a.mim");
        undec(fresh.context, path);
        EXPECT_FALSE(main.stop.visible || main.Picture5.visible || main.doing.visible);
        EXPECT_EQ(fresh.windows.loaded<Form3>(), nullptr);
        EXPECT_EQ(main.List3.count(), dir.names().size() - 1);
        left.insert(dir.names());
        for (const char* name : {"a.bin", "b.bin"}) files::remove_file(dir.path(name));
    }
    EXPECT_EQ(left, (std::set<Names>{{"a.mim"}, {"a.bin", "a.mim"}, {"a.bin", "a.mim", "b.bin"}}));
}

TEST_F(LibraryRun, ASecondTryStopsToo) {
    dir.write("a.txt", undecodable);
    program.platform.on_repaint = [&](controls::Window&) {
        if (w.doing.text == "Trying it another way") controls::run(w.stop.click);
    };
    decode("a.txt");
    EXPECT_FALSE(gave_up());
    EXPECT_EQ(dir.names(), Names{"a.txt"});
}

/// Returns the rewritten text.
template <class Rewriting>
std::string made_of(const std::string& text, Rewriting rewriting) {
    std::string out;
    rewriting(text, [&](std::string_view piece) {
        out += piece;
        return true;
    });
    return out;
}

std::string line(std::size_t length, char c) {
    return std::string(length, c) + "\r\n";
}

TEST(SampleLineLength, IsThatOfAFieldBehindTheFirstLongTriple) {
    const std::vector<std::pair<std::string, std::size_t>> cases = {
        {"", 0},
        {"one\r\n", 3},
        {line(72, 'a'), 72},                                                // the text ends there
        {"a\r\nb\r\n" + line(60, 'c') + "d\r\ne\r\n" + line(77, 'f'), 77},  // third, then sixth
        {"a\r\nb\r\n" + line(59, 'c') + "d\r\ne\r\n" + line(70, 'f') + "g\r\nh\r\ni\r\n", 1},
        {line(70, 'a') + "b\r\nc\r\n", 1},           // only thirds are tested
        {"a,b," + line(60, 'c') + "x,y,zz\r\n", 2},  // fields, not lines
    };
    for (const auto& [text, length] : cases) EXPECT_EQ(sample_line_length(text), length) << text;
    for (const std::size_t odd : {60U, 62U, 72U, 73U, 74U, 75U, 77U, 78U}) EXPECT_TRUE(is_odd_line_length(odd));
    for (const std::size_t even : {0U, 61U, 71U, 76U, 79U}) EXPECT_FALSE(is_odd_line_length(even));
}

TEST(RewrapBody, BringsLinesOf77To76) {
    const std::string head = "Content-Type: x\r\nContent-Disposition: a\r\n filename=b\r\n";
    const std::string body = line(77, 'a') + line(77, 'b') + "c  \r\n";
    EXPECT_EQ(made_of(head + body, rewrap_body), "Content-Type: x\r\nContent-Disposition: a\r\nfilename=b\r\n" +
                                                     line(76, 'a') + "a" + line(75, 'b') + "bbc\r\n");
}

TEST(RewrapBody, LeavesShortLinesAndCopiesATextWithoutDisposition) {
    const std::string head = "Content-Disposition: a\r\nx\r\n";
    EXPECT_EQ(made_of(head + line(60, 'a') + "\r\n" + line(60, 'b'), rewrap_body),
              head + line(60, 'a') + "\r\n" + line(60, 'b'));
    EXPECT_EQ(made_of("content-disposition: a,b\r\n" + line(80, 'c'), rewrap_body),
              "content-disposition: a\r\nb\r\n" + line(80, 'c'));
    EXPECT_EQ(made_of("Content-Dispos\r\nx\r\n" + line(80, 'c'), rewrap_body),
              "Content-Dispos\r\nx\r\n" + line(80, 'c'));
}

TEST(RewrapBody, WritesWhatIsLeftInLinesOf76) {
    const std::string head = "Content-Disposition: a\r\nx\r\n";
    EXPECT_EQ(made_of(head + line(200, 'a'), rewrap_body), head + line(76, 'a') + line(76, 'a') + line(48, 'a'));
}

TEST(CopyLines, TellsWhereAHeadEnds) {
    std::optional<HeadEnd> end;
    const auto copy = [&](const std::string& text) {
        return made_of(text, [&](const text::Source& t, const Sink& out) { end = copy_lines(t, out); });
    };
    EXPECT_EQ(copy("a  \r\nb \r\n  \r\nc"), "a\r\nb \r\n\r\nc\r\n");
    EXPECT_FALSE(end);
    EXPECT_EQ(copy("a\r\nbc\r\n\r\nd\r\n"), "a\r\nbc\r\n");
    EXPECT_EQ(end->offset, 3U + 4U + 2U);
    EXPECT_EQ(copy("a\n\xC3\xA4\nb\n"), "a\r\n");
    EXPECT_EQ(end->offset, 2U + 3U);
    EXPECT_EQ(copy("\x80\r\n"), "\x80\r\n") << "128 itself ends no head";
    EXPECT_FALSE(end);
}

TEST(TailFrom, BeginsTwoBytesBehindTheHeadAndLosesOneMoreInAShortText) {
    EXPECT_EQ(tail_from("0123456789", 5), "56789");
    EXPECT_EQ(tail_from("0123456789", 10), "");
    EXPECT_EQ(tail_from("0123456789", 11), "");
    const std::string text(5000, 'x');
    EXPECT_EQ(tail_from(text, 3999).size(), 5000U - 3998U);
    EXPECT_EQ(tail_from(text, 4000).size(), 5000U - 4000U);
}

}  // namespace
}  // namespace quill::decoder
