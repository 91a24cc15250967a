#include "decoder/triage.h"

#include "decoder/naming_window.h"
#include "decoder/repair_guide.h"
#include "decoder/results.h"
#include "files/directory.h"
#include "files/path.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>
#include <unistd.h>
#include <vector>

namespace quill::decoder {
namespace {

using Names = std::vector<std::string>;

/// Returns a message with one Base64 attachment, `name`, of the bytes "hello, world".
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

/// Returns lines of the given lengths, of letters in the Base64 alphabet.
std::string lines_of(const std::vector<std::size_t>& lengths) {
    std::string out;
    for (const std::size_t length : lengths) out += std::string(length, 'A') + "\r\n";
    return out;
}

class Triage : public testing::Test {
  protected:
    /// Runs `undec` on the file `name`; returns true if it ended the process.
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

TEST_F(Triage, ResultsNameTheirMessageFolderAndOutcome) {
    dir.write("a.mim", message_with("a.bin"));
    dir.write("b.uue", "begin 644 b.bin\r\n#86)C\r\n");
    decode("a.mim");
    EXPECT_EQ(w.run_title.text, "a.mim: 1 saved");
    EXPECT_EQ(w.run_folder.text, dir.path());
    decode("a.mim");
    EXPECT_EQ(w.Results.back().source, "a.mim");
    EXPECT_GT(w.Results.back().run, w.Results.front().run);
    decode("b.uue");
    EXPECT_EQ(w.run_title.text, "b.uue: 1 incomplete") << "a verdict that was not reached is not called saved";
}

TEST_F(Triage, ARunClosesTheWindowsThatAskAboutAnEarlierFile) {
    program.windows.load<Form3>();
    program.windows.load<Form4>().Frame1.visible = true;
    dir.write("a.mim", message_with("hello.txt"));
    EXPECT_FALSE(decode("a.mim"));
    EXPECT_FALSE(gave_up() || asks_for_name());

    program.windows.load<Form4>().Frame2.visible = true;  // in use for something else
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

/// Returns a yEnc post of the bytes "hi" after `ahead`.
std::string yenc_behind(const std::string& ahead) {
    return ahead + "=ybegin line=128 size=2 name=hi.txt\r\n\x92\x93\r\n=yend size=2\r\n";
}

TEST_F(Triage, YencBehindManyFieldsComesOutLikeAnyOther) {
    for (const std::string& ahead : {repeated("a line\r\n", 49), repeated("a, b\r\n", 40)}) {
        dir.write("a.ync", yenc_behind(ahead));
        decode("a.ync");
    }
    EXPECT_EQ(dir.read("hi (2).txt"), "hi");
    EXPECT_EQ(w.List3.items(), (Names{"hi.txt", "hi (2).txt"}));
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

TEST_F(Triage, RowsOfUueWithoutABeginLineAreNotTakenForBase64) {
    const std::string row = "M" + repeated("86)C", 15) + "\r\n";
    dir.write("rows.txt", repeated(row, 6) + "`\r\nend\r\n");
    EXPECT_FALSE(decode("rows.txt"));
    ASSERT_EQ(w.List3.count(), 1U);
    EXPECT_EQ(dir.read(w.List3.items().front()), repeated("abc", 90));
    EXPECT_NE(w.Results.front().outcome->verdict, codec::Verdict::whole);
    EXPECT_FALSE(files::exists(dir.path("1rows.txt")));
}

TEST_F(Triage, TheNamingWindowOfAnEarlierRunEndsNoLaterOne) {
    dir.write("mystery", lines_of({76, 76, 76, 76}));
    decode("mystery");
    EXPECT_TRUE(asks_for_name() && program.session.NamingTaken);
    dir.write("hello.txt", lines_of({76, 76, 76, 76}));
    program.platform.expect_question("1hello.txt", true);
    decode("hello.txt");
    EXPECT_FALSE(asks_for_name() || program.session.NamingTaken);
    EXPECT_EQ(w.List3.items(), Names{"hello (2).txt"});
}

/// Returns a message with one attachment of 45 bytes in UUE, its lines ended by `ending`.
std::string uue_lines(const std::string& ending) {
    std::string text;
    for (const char* line : {"From: a", "To: b", "Subject: c", "", "begin 644 a.bin",
                             "M86)C86)C86)C86)C86)C86)C86)C86)C86)C86)C86)C86)C86)C86)C86)C", "`", "end"}) {
        text += line + ending;
    }
    return text;
}

TEST_F(Triage, BlanksAndTagsAtLineEndsAreReadOverAndTheInputStaysAsItWas) {
    for (const char* ending : {"\r\n", "  \r\n", " \r\n", "<BR>\r\n", "<BR>\n", "\n"}) {
        SCOPED_TRACE(ending);
        tests::TemporaryDirectory here;
        tests::Program fresh;
        std::string file = here.write("a.mim", uue_lines(ending));
        undec(fresh.context, file);
        EXPECT_EQ(here.read("a.bin"), repeated("abc", 15));
        EXPECT_EQ(here.read("a.mim"), uue_lines(ending));
        EXPECT_EQ(here.names(), (Names{"a.bin", "a.mim"}));
        EXPECT_EQ(file, here.path("a.mim"));
    }
}

TEST_F(Triage, TheSearchForTagsStopsToo) {
    dir.write("a.mim", uue_lines("<BR>\r\n"));
    program.platform.on_repaint = [&](controls::Window&) {
        if (w.doing.text == "Reading a.mim") controls::run(w.stop.click);
    };
    EXPECT_FALSE(decode("a.mim") || gave_up());
    EXPECT_EQ(dir.names(), Names{"a.mim"});
}

TEST_F(Triage, TextThatLostItsTagsIsNotCalledWhole) {
    const std::string text =
        "Subject: a<BR>\r\nMIME-Version: 1.0<BR>\r\nContent-Disposition: attachment; filename=a.htm<BR>\r\n<BR>\r\n"
        "one<BR>\r\ntwo<BR>\r\n";
    dir.write("a.mim", text);
    decode("a.mim");
    ASSERT_EQ(w.List3.items(), Names{"a.htm"});
    EXPECT_EQ(result_row(w, 0).verdict, codec::Verdict::damaged);
    EXPECT_EQ(result_row(w, 0).problems.back().kind, codec::ProblemKind::tags_removed_from_text);
    EXPECT_EQ(dir.read("a.mim"), text);
}

/// Returns a header line of `length` characters.
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

TEST_F(Triage, PartsOfShortRowsAreDecodedUnderTheirNamesInEveryRun) {
    const std::string rows = repeated(repeated("QUJD", 15) + "\r\n", 4);
    std::string text = "MIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=x\r\n\r\n";
    for (const char* name : {"a.bin", "b.bin"}) {
        text += "--x\r\nContent-Transfer-Encoding: base64\r\nContent-Disposition: attachment; filename=" +
                std::string(name) + "\r\n\r\n" + rows;
    }
    dir.write("a.mim", text + "--x--\r\n");
    decode("a.mim");
    decode("a.mim");
    EXPECT_EQ(w.List3.items(), (Names{"a.bin", "b.bin", "a (2).bin", "b (2).bin"}));
    EXPECT_EQ(dir.read("b (2).bin"), repeated("ABC", 60));
    EXPECT_EQ(dir.read("a.mim"), text + "--x--\r\n");
}

TEST_F(Triage, WhatIsNoTextAtAllIsExplainedWithoutTheGuideAndWithoutAFile) {
    dir.write("empty.mim", "");
    dir.make_directory("letters");
    ASSERT_EQ(symlink("/dev/null", dir.path("null.mim").c_str()), 0);
    struct Case {
        const char* name;
        const char* said;
    };
    for (const Case& c : {Case{"empty.mim", "is empty"}, Case{"gone.mim", "is not in"}, Case{"letters", "is a folder"},
                          Case{"null.mim", "is a device"}}) {
        program.platform.expect_message(c.said);
        EXPECT_FALSE(decode(c.name)) << c.name;
        EXPECT_FALSE(gave_up()) << c.name;
        EXPECT_FALSE(program.main_window.Picture2.visible) << c.name;
    }
    EXPECT_FALSE(files::exists(dir.path("gone.mim")));
}

TEST_F(Triage, AnEndOverAnInputBeginsANewSessionThatSaysSo) {
    dir.write("photo", "\xFF\xD8\xFF\xE0 JFIF");
    program.platform.opening_works = false;
    std::string picture = dir.path("photo");
    try {
        undec(program.context, picture);
        FAIL() << "the session goes on";
    } catch (const platform::SessionEnd& end) {
        EXPECT_NE(end.said.find("photo.jpg"), std::string::npos);
        EXPECT_NE(end.said.find("no program"), std::string::npos);
    }
}

}  // namespace
}  // namespace quill::decoder
