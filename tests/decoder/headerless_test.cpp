#include "decoder/headerless.h"

#include "decoder/mime_wrap.h"
#include "decoder/naming_window.h"
#include "decoder/triage.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>
#include <string_view>
#include <vector>

namespace quill::decoder {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const std::string consent = "is named as the file it is supposed to be";

std::string header_for(const std::string& name) {
    return "Content-Type: application\\octet-stream; name=\"" + name +
           "\"\r\n"
           "Content-Transfer-Encoding: Base64\r\n"
           "Content-Disposition: attachment; filename=\"" +
           name +
           "\"\r\n"
           "\r\n";
}

std::string lines(std::size_t count, std::size_t length, char first = 'A') {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += std::string(length, static_cast<char>(first + static_cast<char>(i))) + "\r\n";
    }
    return text;
}

std::string rewritten(void (*rewriting)(const text::Source&, const Sink&), std::string_view text) {
    std::string out;
    rewriting(text, [&](std::string_view piece) {
        out += piece;
        return true;
    });
    return out;
}

std::string times(std::size_t n, char c) {
    return std::string(n, c);
}

struct Wrapping {
    const char* what;
    std::string text;
    std::string wrapped;
};

TEST(Rewrap, GivesLinesOf76) {
    const std::vector<Wrapping> cases = {
        Wrapping{"nothing at all", "", "\r\n"},
        Wrapping{"short lines are joined", lines(2, 30), times(30, 'A') + times(30, 'B') + "\r\n"},
        Wrapping{"76 characters are a line, and an empty one closes the text", lines(1, 76),
                 times(76, 'A') + "\r\n\r\n"},
        Wrapping{"60 carry 44 of the next", lines(2, 60),
                 times(60, 'A') + times(16, 'B') + "\r\n" + times(44, 'B') + "\r\n"},
        Wrapping{"152 make two lines", lines(1, 152), times(76, 'A') + "\r\n" + times(76, 'A') + "\r\n\r\n"},
        Wrapping{"a longer field makes two lines, the rest waits for the next", times(200, 'A') + "\r\n",
                 times(76, 'A') + "\r\n" + times(76, 'A') + "\r\n" + times(48, 'A') + "\r\n"},
        Wrapping{"what waits longer than a line makes one long last line", times(300, 'A'),
                 times(76, 'A') + "\r\n" + times(76, 'A') + "\r\n" + times(148, 'A') + "\r\n"},
        Wrapping{"two blanks at an end are dropped, one stays, three leave one", "AB  \r\nCD \r\nEF   \r\n",
                 "ABCD EF \r\n"},
        Wrapping{"commas and quotes part fields", "A,B\r\n\"C,D\"x\r\n", "ABC,D\r\n"},
        Wrapping{"Unix lines", times(40, 'A') + "\n" + times(40, 'B') + "\n",
                 times(40, 'A') + times(36, 'B') + "\r\n" + times(4, 'B') + "\r\n"}};
    for (const Wrapping& c : cases) EXPECT_EQ(rewritten(rewrap, c.text), c.wrapped) << c.what;
}

TEST(Rewrap, StopsWhenNoMoreIsTaken) {
    int pieces = 0;
    rewrap(lines(20, 60), [&](std::string_view) { return ++pieces < 3; });
    EXPECT_EQ(pieces, 3);
}

TEST(MimeHeader, KeepsANameFromBreakingOutOfItsQuotes) {
    std::string header;
    write_base64_header("a\"b\\c\r\nSubject: x", [&](std::string_view piece) {
        header += piece;
        return true;
    });
    EXPECT_EQ(header, header_for("a\\\"b\\\\c__Subject: x"));
}

class Headerless : public testing::Test {
  protected:
    /// Makes a file of four even lines with the given name the input of the run.
    void begin_with(const std::string& name, const std::string& text) {
        program_.session.EncodedPath = directory_.write(name, text);
    }
    void run(int length) { nohead(program_.context, length); }

    Form4& naming_window() {
        Form4* window = program_.windows.loaded<Form4>();
        EXPECT_NE(window, nullptr);
        return program_.windows.load<Form4>();
    }

    tests::TemporaryDirectory directory_;
    tests::Program program_;
};

TEST_F(Headerless, ANameWithAnExtensionGetsAHeaderAtOnceAndTheRunGoesOnWithTheCopy) {
    begin_with("Photo.JPG", lines(4, 76));
    program_.platform.expect_question("called 1Photo.JPG and try", true);
    run(76);
    EXPECT_EQ(program_.session.EncodedPath, directory_.path("1Photo.JPG"));
    EXPECT_EQ(program_.session.SkipName, "1photo.jpg");
    EXPECT_FALSE(program_.session.NamingTaken);
    EXPECT_EQ(directory_.read("1Photo.JPG"), header_for("Photo.JPG") + lines(4, 76));
    EXPECT_EQ(directory_.read("Photo.JPG"), lines(4, 76));
    EXPECT_THAT(directory_.names(), ElementsAre("1Photo.JPG", "Photo.JPG"));
}

TEST_F(Headerless, OtherLengthsAreReWrappedInTheCopyAlone) {
    begin_with("x.jpg", lines(4, 60));
    program_.platform.expect_question(consent, true, [&] { EXPECT_EQ(directory_.read("x.jpg"), lines(4, 60)); });
    run(60);
    EXPECT_EQ(directory_.read("x.jpg"), lines(4, 60));
    EXPECT_EQ(directory_.read("1x.jpg"), header_for("x.jpg") + rewritten(rewrap, lines(4, 60)));
    EXPECT_THAT(directory_.names(), ElementsAre("1x.jpg", "x.jpg"));
}

TEST_F(Headerless, ATableThatTheUserDoesNotWantDecodedStaysAsItIs) {
    for (const char* name : {"table.txt", "table"}) {
        begin_with(name, lines(4, 60));
        if (std::string_view(name) == "table.txt") {
            program_.platform.expect_question(consent, false);
            EXPECT_TRUE(tests::ends_process([&] { run(60); }));
        } else {
            run(60);
            EXPECT_TRUE(tests::ends_process([&] { controls::run(naming_window().Command4.click); }));
        }
        EXPECT_EQ(directory_.read(name), lines(4, 60));
    }
    EXPECT_THAT(directory_.names(), ElementsAre("table", "table.txt"));
}

TEST_F(Headerless, AStopLeavesNoCopyAndDecodesNothing) {
    std::string path = directory_.write("x.jpg", lines(4, 60));
    shell::swit& w = program_.main_window;
    program_.platform.expect_question(consent, true);
    program_.platform.on_repaint = [&](controls::Window&) {
        if (w.doing.text == "Writing 1x.jpg") controls::run(w.stop.click);
    };
    undec(program_.context, path);
    EXPECT_THAT(directory_.names(), ElementsAre("x.jpg"));
    EXPECT_FALSE(w.stop.visible);
}

TEST_F(Headerless, ShortLinesAheadOfTheFirstLongOneAreLeftOutAndThoseBehindItKept) {
    begin_with("x.jpg", "note\r\n" + times(50, 'n') + "\r\n" + times(51, 'A') + "\r\nshort\r\n");
    program_.platform.expect_question(consent, true);
    run(76);
    EXPECT_EQ(directory_.read("1x.jpg"), header_for("x.jpg") + times(51, 'A') + "\r\nshort\r\n");
}

TEST_F(Headerless, NoConsentEndsTheProcessAndMakesNothing) {
    begin_with("x.jpg", lines(4, 76));
    program_.platform.expect_question(consent, false);
    EXPECT_TRUE(tests::ends_process([&] { run(76); }));
    EXPECT_THAT(directory_.names(), ElementsAre("x.jpg"));
}

TEST_F(Headerless, AnEarlierCopyIsNeverLostAndServesAgainWhereItIsTheSame) {
    begin_with("x.jpg", lines(4, 76));
    directory_.write("1x.jpg", "somebody's own");
    for (int pass = 0; pass < 2; ++pass) {
        program_.session.EncodedPath = directory_.path("x.jpg");
        program_.platform.expect_question(consent, true);
        run(76);
        EXPECT_EQ(program_.session.EncodedPath, directory_.path("1x (2).jpg"));
        EXPECT_EQ(program_.session.SkipName, "1x (2).jpg");
    }
    EXPECT_EQ(directory_.read("1x.jpg"), "somebody's own");
    EXPECT_EQ(directory_.read("1x (2).jpg"), header_for("x.jpg") + lines(4, 76));
    EXPECT_THAT(directory_.names(), ElementsAre("1x (2).jpg", "1x.jpg", "x.jpg"));
}

TEST_F(Headerless, AFileThatIsGoneLeavesEverythingAsItWas) {
    for (const int length : {60, 76}) {
        program_.session.EncodedPath = directory_.path("gone.jpg");
        program_.platform.expect_question(consent, true);
        run(length);
        EXPECT_EQ(program_.session.EncodedPath, directory_.path("gone.jpg"));
        EXPECT_EQ(program_.session.SkipName, "");
    }
    EXPECT_TRUE(directory_.names().empty());
}

TEST_F(Headerless, NamesWithoutATellingExtensionGoToTheNamingWindow) {
    directory_.make_directory("a.dir");
    for (const char* name : {"x", "x.mim", "x.MIM", "x.js", "x.abcdef", "a.dir/xy"}) {
        SCOPED_TRACE(name);
        program_.session.NamingTaken = false;
        begin_with(name, lines(4, 76));
        run(76);
        EXPECT_TRUE(program_.session.NamingTaken);
        EXPECT_EQ(naming_window().caption, "File name not found");
        EXPECT_TRUE(naming_window().Frame1.visible);
    }
}

TEST_F(Headerless, AnExtensionOfFourLettersIsOne) {
    begin_with("x.jpeg", lines(4, 76));
    program_.platform.expect_question(consent, true);
    run(76);
    EXPECT_EQ(program_.session.EncodedPath, directory_.path("1x.jpeg"));
}

TEST_F(Headerless, TheNamingWindowSaysWhichPictureTheTextBeginsLike) {
    struct Case {
        const char* begins;
        const char* hint;
    };
    for (const Case& c : {Case{"/9jAAA", "It appears to be a Jpg file"}, Case{"R0lGOD", "It appears to be a Gif file"},
                          Case{"r0lGOD", ""}, Case{"UEsDBA", ""}}) {
        begin_with("x", c.begins + lines(4, 76));
        run(76);
        EXPECT_EQ(naming_window().Label3.text, c.hint) << c.begins;
    }
}

class Naming : public Headerless {
  protected:
    void SetUp() override {
        begin_with("mystery", lines(4, 76));
        run(76);
    }
    bool ok() {
        return tests::ends_process([&] { controls::run(naming_window().Command3.click); });
    }
};

TEST_F(Naming, OkWritesTheCopyUnderTheNameGivenAndEnds) {
    naming_window().Option1(2).chosen = true;
    program_.platform.expect_input("I will add the .gif to the file's name for you.", "cat");
    program_.platform.expect_question("called 1mystery and try", true);
    program_.platform.expect_message("choose the 1mystery file to decode instead of the mystery file");
    EXPECT_TRUE(ok());
    EXPECT_EQ(program_.platform.prompts.at(0).title, "Name for the file?");
    EXPECT_EQ(program_.platform.prompts.at(0).default_answer, "Temporary");
    EXPECT_EQ(directory_.read("1mystery"), header_for("cat.gif") + lines(4, 76));
    EXPECT_EQ(program_.session.SkipName, "1mystery");
}

TEST_F(Naming, OtherLengthsAreReWrappedInTheCopyAlone) {
    begin_with("mystery", lines(4, 60));
    run(60);
    naming_window().Option1(0).chosen = true;
    program_.platform.expect_input("add the .jpg to", "cat");
    program_.platform.expect_question(consent, true);
    program_.platform.expect_message("1mystery");
    EXPECT_TRUE(ok());
    EXPECT_EQ(directory_.read("1mystery"), header_for("cat.jpg") + rewritten(rewrap, lines(4, 60)));
    EXPECT_EQ(directory_.read("mystery"), lines(4, 60));
}

TEST_F(Naming, ATypedExtensionWinsAndNeedsNoDot) {
    for (const char* typed : {"txt", ".txt", " txt "}) {
        begin_with("mystery", lines(4, 76));
        naming_window().Option1(0).chosen = true;
        naming_window().Text1.text = typed;
        program_.platform.expect_input("add the .txt to", "note");
        program_.platform.expect_question(consent, true);
        program_.platform.expect_message("1mystery");
        EXPECT_TRUE(ok());
        EXPECT_THAT(directory_.read("1mystery"), StartsWith(header_for("note.txt")));
    }
}

TEST_F(Naming, WithoutATypeItAsksForOneAndStays) {
    program_.platform.expect_message("You have not said what type of file to call it.");
    EXPECT_FALSE(ok());
    EXPECT_THAT(directory_.names(), ElementsAre("mystery"));
}

TEST_F(Naming, EveryRefusalEndsTheProcessWithoutAFile) {
    naming_window().Option1(0).chosen = true;
    program_.platform.expect_input("What would you like to call this file?", "");
    EXPECT_TRUE(ok());
    program_.platform.expect_input("What would you like to call this file?", "cat");
    program_.platform.expect_question(consent, false);
    EXPECT_TRUE(ok());
    EXPECT_TRUE(tests::ends_process([&] { controls::run(naming_window().Command4.click); }));
    EXPECT_TRUE(tests::ends_process([&] { controls::run(naming_window().close); }));
    EXPECT_THAT(directory_.names(), ElementsAre("mystery"));
}

TEST_F(Naming, ACopyThatCannotBeWrittenIsSaidAndTheWindowStays) {
    program_.session.EncodedPath = directory_.path("no such directory/mystery");
    naming_window().Option1(0).chosen = true;
    program_.platform.expect_input("What would you like to call this file?", "cat");
    program_.platform.expect_question(consent, true);
    program_.platform.expect_message("could not be written: ");
    EXPECT_FALSE(ok());
    EXPECT_EQ(program_.session.EncodedPath, directory_.path("no such directory/mystery"));
}

}  // namespace
}  // namespace quill::decoder
