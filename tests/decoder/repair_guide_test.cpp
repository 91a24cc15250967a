#include "decoder/repair_guide.h"

#include "files/directory.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "viewer/save_pictures.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <set>
#include <string>
#include <sys/stat.h>

namespace quill::decoder {
namespace {

using Start = tests::ScriptedPlatform::Start;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string header =
    "Content-Type: application\\octet-stream; name=\"TEMP\"\r\n"
    "Content-Transfer-Encoding: Base64\r\n"
    "Content-Disposition: attachment; filename=\"TEMP\"\r\n"
    "\r\n";

class RepairGuide : public testing::Test {
  protected:
    /// Opens the guide on a file `name` that contains `text`.
    Form3& open_on(const std::string& name, const std::string& text) {
        program_.session.EncodedPath = directory_.write(name, text);
        show_repair_guide(program_.context);
        return program_.windows.load<Form3>();
    }

    /// Chooses like the view: sets the choice and runs its action. Returns true if the process ended.
    static bool choose(controls::Choice& choice) {
        choice.chosen = true;
        return tests::ends_process([&] { controls::run(choice.click); });
    }
    static void pick(const controls::MenuItem& item) { controls::run(item.click); }

    /// Expects the messages when Option7 or Option8 is chosen, up to the start of the repair.
    void expect_repair(const std::string& message, bool yes = true) {
        program_.platform.expect_message(message);
        program_.platform.expect_question("click NO now. Did you look at the file", yes);
    }
    void expect_finish() {
        program_.platform.expect_message("This program will now attempt to reformat");
        program_.platform.expect_message(
            "called NEW.MIM and would be in the same directory as the file you were "
            "trying to decode, that directory is " +
            directory_.path() + "/.  You can now");
    }

    tests::TemporaryDirectory directory_;
    tests::Program program_;
};

const std::string even_rows = "getting MIME encoded files without the header info";
const std::string long_line = "HTML encoded files without line breaks";

TEST_F(RepairGuide, OpensWithTheFirstChoicesAndWhatWasFound) {
    const Form3& w = open_on("post.txt", "just words\r\n");
    EXPECT_EQ(w.caption, "Quillbright Pro 2012");
    EXPECT_THAT(w.Label1.text, StartsWith("Quillbright Pro is having trouble decoding this file."));
    EXPECT_THAT(w.Label2.text, AllOf(HasSubstr("just words"), HasSubstr("No encoded text was found")));
    EXPECT_FALSE(w.fil.visible || w.Frame1.visible || w.Frame2.visible || w.Option4.visible);
    EXPECT_FALSE(w.option5.enabled);
}

TEST_F(RepairGuide, SaysWhyAFileCannotBeRead) {
    program_.session.EncodedPath = directory_.path("gone.mim");
    show_repair_guide(program_.context);
    EXPECT_EQ(program_.windows.load<Form3>().Label2.text,
              "The file gone.mim could not be read: No such file or directory.");
}

TEST_F(RepairGuide, CancelAndClosingTheWindowEndTheProcess) {
    Form3& w = open_on("post.txt", "x");
    EXPECT_TRUE(tests::ends_process([&] { controls::run(w.Command1.click); }));
    EXPECT_TRUE(tests::ends_process([&] { controls::run(w.close); }));
}

TEST_F(RepairGuide, StartsTheQuotedPrintableProgramOnTheFile) {
    Form3& w = open_on("a post.txt", "x");
    program_.session.AppDir = directory_.path();
    EXPECT_FALSE(choose(w.Option1));
    directory_.write("qpunwrap", "no program");
    EXPECT_FALSE(choose(w.Option1));
    EXPECT_THAT(program_.platform.started, testing::Each(testing::Field(&Start::program, "qpunwrap")));
    program_.platform.started.clear();
    ASSERT_EQ(chmod(directory_.path("qpunwrap").c_str(), S_IRWXU), 0);
    EXPECT_FALSE(choose(w.Option1));
    const std::string input = directory_.path("a post.txt");
    EXPECT_THAT(program_.platform.started, ElementsAre(Start{directory_.path("qpunwrap"), {input}, directory_.path()}));
    EXPECT_FALSE(w.Option1.chosen);
    EXPECT_TRUE(w.Option4.chosen);
    EXPECT_THAT(w.Label2.text, StartsWith("The quoted-printable program has been started"));

    program_.platform.starting_works = false;
    EXPECT_FALSE(choose(w.Option1));
    EXPECT_THAT(w.Label2.text, StartsWith("The quoted-printable program could not be started"));
}

TEST_F(RepairGuide, LookingAtTheFileUnlocksTheFurtherOptions) {
    Form3& w = open_on("post.txt", "x");
    EXPECT_FALSE(choose(w.Option2));
    EXPECT_THAT(program_.platform.edited, ElementsAre(directory_.path("post.txt")));
    EXPECT_TRUE(w.option5.enabled);
    EXPECT_FALSE(w.Option2.chosen);
    EXPECT_FALSE(choose(w.option5));
    EXPECT_TRUE(w.Frame2.visible);
    EXPECT_FALSE(choose(w.Option10));
    EXPECT_FALSE(w.Frame2.visible || w.Option10.chosen || w.option5.chosen);
}

TEST_F(RepairGuide, TheTutorialEndsWhenSaveIsPickedOnTheRightText) {
    Form3& w = open_on("post.txt", "x");
    EXPECT_FALSE(choose(w.Option3));
    EXPECT_TRUE(w.fil.visible && w.Frame1.visible);

    program_.platform.expect_message("No, clicking this would open a new file");
    pick(w.ope);
    program_.platform.expect_message("No, clicking this would print the file");
    pick(w.prnt);
    program_.platform.expect_message("Clicking this could work");
    pick(w.sava);
    program_.platform.expect_message("You could click this and the text editor");
    pick(w.edd);

    program_.platform.expect_message("Very good");
    program_.platform.expect_message("You did not delete all the lines");
    pick(w.sav);
    EXPECT_TRUE(w.fil.visible && w.Frame1.visible);

    const std::string rest = w.Text1.text.substr(w.Text1.text.find("Content-Type: image"));
    for (const char* left : {"", "\n", "\r\n"}) {
        w.Text1.text = left + rest;
        w.fil.visible = w.Frame1.visible = true;
        program_.platform.expect_message("Very good");
        pick(w.sav);
        EXPECT_FALSE(w.fil.visible || w.Frame1.visible);
    }
}

TEST_F(RepairGuide, ABinaryFileAndAStrangeOneGetAdviceAndEnd) {
    Form3& w = open_on("post.txt", "x");
    for (const char* part : {"not encoded", "decoded already", "another program"})
        program_.platform.expect_message(part);
    EXPECT_TRUE(choose(w.Option6));
    program_.platform.expect_message("Please write to");
    EXPECT_TRUE(choose(w.Option9));
}

TEST_F(RepairGuide, PutsAHeaderAboveTheFirstLongLine) {
    const std::string row(60, 'A');
    Form3& w = open_on("post.txt", "hello\r\n" + row + "\r\n\r\nend\r\n");
    expect_repair(even_rows);
    expect_finish();
    program_.platform.expect_message("rename it TEMP.DOC or ANYTHING.DOC");
    EXPECT_TRUE(choose(w.Option7));
    EXPECT_EQ(directory_.read("new.mim"), header + row + "\r\n\r\nend\r\n");
    EXPECT_EQ(directory_.read("post.txt"), "hello\r\n" + row + "\r\n\r\nend\r\n");
    EXPECT_THAT(directory_.names(), ElementsAre("new.mim", "post.txt"));
    EXPECT_THAT(program_.platform.messages.at(1),
                AllOf(StartsWith("    This program will now attempt to reformat " + directory_.path("post.txt") +
                                 " and change it to add"),
                      HasSubstr("save the file as " + directory_.path("new.mim") + ". You can try")));
    EXPECT_EQ(program_.platform.questions.at(0).title, "Was this what you saw?");
    EXPECT_TRUE(program_.platform.questions.at(0).no_is_default);
}

TEST_F(RepairGuide, ARepairReplacesNoEarlierOne) {
    directory_.write("new.mim", "an earlier repair");
    Form3& w = open_on("post.txt", "a<BR>b\r\n");
    expect_repair(long_line);
    program_.platform.expect_message(directory_.path("new (2).mim"));
    program_.platform.expect_message("would be called new (2).mim");
    EXPECT_TRUE(choose(w.Option8));
    EXPECT_EQ(directory_.read("new.mim"), "an earlier repair");
    EXPECT_EQ(directory_.read("new (2).mim"), "a\r\nb\r\n");
}

TEST_F(RepairGuide, AFileWithoutALongLineGetsTheHeaderAlone) {
    Form3& w = open_on("post.txt", std::string(50, 'A') + "\r\n");
    expect_repair(even_rows);
    expect_finish();
    program_.platform.expect_message("TEMP.DOC");
    EXPECT_TRUE(choose(w.Option7));
    EXPECT_EQ(directory_.read("new.mim"), header);
}

TEST_F(RepairGuide, BreaksLinesAtTagsInCapitals) {
    struct Case {
        const char* text;
        const char* broken;
    };
    for (const Case& c : {Case{"a<BR>b<BR>c\r\n", "a\r\nb\r\nc\r\n"}, Case{"a<BR>\r\nb\r\n", "a\r\n\r\nb\r\n"},
                          Case{"<BR><BR>", "\r\n\r\n\r\n"}, Case{"a<br>b\r\n", "a<br>b\r\n"},
                          Case{"a<BR<BR>R>\n", "a<BR\r\nR>\r\n"}, Case{"", ""}}) {
        SCOPED_TRACE(c.text);
        Form3& w = open_on("post.txt", c.text);
        expect_repair(long_line);
        expect_finish();
        EXPECT_TRUE(choose(w.Option8));
        EXPECT_EQ(directory_.read("new.mim"), c.broken);
        files::remove_file(directory_.path("new.mim"));
    }
}

TEST_F(RepairGuide, ANoChangesNothingAndTheChoiceCanBeMadeAgain) {
    Form3& w = open_on("post.txt", "x");
    expect_repair(even_rows, false);
    EXPECT_FALSE(choose(w.Option7));
    expect_repair(long_line, false);
    EXPECT_FALSE(choose(w.Option8));
    EXPECT_FALSE(w.Option7.chosen || w.Option8.chosen);
    EXPECT_THAT(directory_.names(), ElementsAre("post.txt"));
}

TEST_F(RepairGuide, RefusesToRepairARepairedFile) {
    for (const char* name : {"new.mim", "NEW.MIM"}) {
        Form3& w = open_on(name, "x");
        expect_repair(long_line);
        program_.platform.expect_message("will now attempt");
        program_.platform.expect_message("File name is already new.mim.");
        EXPECT_TRUE(choose(w.Option8));
        EXPECT_EQ(directory_.read(name), "x");
    }
}

TEST_F(RepairGuide, SaysWhyARepairCannotBeMadeAndStays) {
    Form3& w = open_on("post.txt", "x");
    EXPECT_TRUE(files::remove_file(directory_.path("post.txt")));
    directory_.write("new.mim", "an earlier repair");
    expect_repair(long_line);
    program_.platform.expect_message("will now attempt");
    program_.platform.expect_message("The file " + directory_.path("post.txt") +
                                     " could not be read: No such file or directory. Nothing has been changed.");
    EXPECT_FALSE(choose(w.Option8));
    EXPECT_EQ(directory_.read("new.mim"), "an earlier repair");

    program_.session.EncodedPath = "/proc/self/status";
    expect_repair(long_line);
    program_.platform.expect_message("will now attempt");
    program_.platform.expect_message("The file /proc/self/new.mim could not be written: ");
    EXPECT_FALSE(choose(w.Option8));
}

TEST_F(RepairGuide, AStoppedRepairLeavesNothing) {
    Form3& w = open_on("post.txt", "a<BR>b\r\n");
    expect_repair(long_line);
    program_.platform.expect_message("will now attempt");
    program_.platform.on_repaint = [&](controls::Window&) {
        if (auto* panel = program_.windows.loaded<viewer::SavPic>()) controls::run(panel->stop.click);
    };
    EXPECT_FALSE(choose(w.Option8));
    EXPECT_THAT(directory_.names(), ElementsAre("post.txt"));
}

TEST_F(RepairGuide, EveryControlIsNamedOnceAndHasARole) {
    Form3& w = open_on("post.txt", "x");
    std::set<std::string> names;
    visit_controls(w, [&](const std::string& name, const std::string& role, const controls::Control&) {
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_FALSE(role.empty()) << name;
    });
    EXPECT_EQ(names.size(), 24U);
}

}  // namespace
}  // namespace quill::decoder
