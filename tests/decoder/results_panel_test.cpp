#include "decoder/results_panel.h"

#include "codec/recovery/disguise.h"
#include "decoder/repair_guide.h"
#include "files/directory.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>

namespace quill::decoder {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string jpeg = "\xFF\xD8\xFF\xE0 picture"s;
const std::string will_load = "attempt to load this file into the default program";

class ResultsPanel : public testing::Test {
  protected:
    void SetUp() override { connect_results_panel(program_.context); }

    /// Adds a file to the results and selects it.
    void found(const std::string& name, const std::string& bytes, std::optional<codec::Outcome> outcome = {}) {
        directory_.write(name, bytes);
        add_results(program_.main_window, directory_.path(), {{name, std::move(outcome)}});
    }
    controls::ListBox& list() { return program_.main_window.List3; }
    void double_click() { controls::run(list().double_click); }
    static void click(controls::Button& button) { controls::run(button.click); }

    tests::TemporaryDirectory directory_;
    tests::Program program_;
};

TEST_F(ResultsPanel, AllPicturesGoToTheViewerWhereThereAreSome) {
    found("letter.txt", "x");
    EXPECT_FALSE(program_.main_window.pictures.visible);
    found("a.png", "x");
    found("b.JPG", "x");
    EXPECT_TRUE(program_.main_window.pictures.visible);
    program_.platform.expect_message("can't show pictures yet");
    click(program_.main_window.pictures);
    std::vector<std::string> shown;
    program_.routes.show_pictures = [&](const std::vector<std::string>& paths) { shown = paths; };
    click(program_.main_window.pictures);
    EXPECT_THAT(shown, ElementsAre(directory_.path("letter.txt"), directory_.path("a.png"), directory_.path("b.JPG")));
    remove_result(program_.main_window, 2);
    remove_result(program_.main_window, 1);
    EXPECT_FALSE(program_.main_window.pictures.visible);
}

struct Opening {
    const char* name;
    std::string bytes;
    const char* opened_as;
};

TEST_F(ResultsPanel, PicturesGetTheEndingThatTheyLackAndAllElseOpensUnderItsName) {
    for (const Opening& c :
         {Opening{"x.txt", "GIF89a", "x.txt.gif"}, Opening{"Photo", jpeg, "photo.jpg"},
          Opening{"one byte", "\xFF", "one byte"}, Opening{"song.mp3", "\xFF\xFB\x90", "song.mp3"},
          Opening{"thought.txt", "GIF is a format", "thought.txt"}, Opening{"a.GIF", "GIF87a", "a.GIF"},
          Opening{"b.jpeg", jpeg, "b.jpeg"}, Opening{"c.JPG", jpeg, "c.JPG"}, Opening{"ajpeg", jpeg, "ajpeg"},
          Opening{"Green", "GAF89a", "Green"}, Opening{"g", "GI", "g"}, Opening{"Run.sh", "#!/bin/sh", "Run.sh"}}) {
        SCOPED_TRACE(c.name);
        found(c.name, c.bytes);
        program_.platform.expect_message(will_load);
        double_click();
        EXPECT_EQ(program_.platform.opened.back(), directory_.path(c.opened_as));
        EXPECT_EQ(list().items().back(), c.opened_as);
        EXPECT_EQ(directory_.read(c.opened_as), c.bytes);
    }
    EXPECT_THAT(program_.platform.started, IsEmpty());
}

TEST_F(ResultsPanel, APictureGetsItsEndingUnderANameThatNobodyHas) {
    directory_.write("x.gif", "older");
    found("x", "GIF89a", codec::Outcome{codec::Verdict::damaged, 6, {}});
    program_.platform.expect_message(will_load);
    double_click();
    EXPECT_EQ(directory_.read("x.gif"), "older");
    EXPECT_EQ(directory_.read("x (2).gif"), "GIF89a");
    EXPECT_THAT(list().items(), ElementsAre("x (2).gif"));
    EXPECT_EQ(result_row(program_.main_window, 0).verdict, codec::Verdict::damaged);
}

struct Active {
    const char* name;
    const char* bytes;
    const char* what;
};

TEST_F(ResultsPanel, TypesThatCanDoHarmAreOpenedAfterAQuestionOnly) {
    for (const Active& c : {Active{"a.jnlp", "x", "downloads a program"}, Active{"a.url", "x", "a link"},
                            Active{"A.HTA", "x", "a web page"}, Active{"a.vbs", "x", "a script"},
                            Active{"a.lnk", "x", "a Windows shortcut"}, Active{"a.command", "x", "a script for macOS"},
                            Active{"a.txt.html", "x", "a web page"}, Active{"a.svg", "x", "a drawing"},
                            Active{"a.deb", "x", "a package"}, Active{"a.docm", "x", "macros"},
                            Active{"page", "<html><script>", "a web page"}, Active{"a.html .", "x", "a web page"}}) {
        SCOPED_TRACE(c.name);
        found(c.name, c.bytes);
        program_.platform.opened.clear();
        program_.platform.expect_question(c.what, false);
        double_click();
        EXPECT_THAT(program_.platform.opened, IsEmpty());
        EXPECT_TRUE(program_.platform.questions.back().no_is_default);
        program_.platform.expect_question(c.what, true);
        program_.platform.expect_message(will_load);
        double_click();
        EXPECT_THAT(program_.platform.opened, ElementsAre(directory_.path(c.name)));
    }
    for (const char* name : {"a.txt", "a.pdf", "a.docx", "html", "a.", "a.x.deb.png", "readme", "a.htmlx", "a.c"}) {
        SCOPED_TRACE(name);
        found(name, "x");
        program_.platform.expect_message(will_load);
        double_click();
    }
}

TEST_F(ResultsPanel, ARowGoesWhoseFileAnotherTookThePlaceOf) {
    found("x.gif", "GIF89a");
    found("y", "text");
    EXPECT_TRUE(files::remove_file(directory_.path("x.gif")));
    program_.platform.expect_input("Enter a new name for the file called y", "x.gif");
    click(program_.main_window.Command5);
    EXPECT_THAT(list().items(), ElementsAre("x.gif"));
    EXPECT_EQ(list().selected_item(), "x.gif");
}

TEST_F(ResultsPanel, EachRowIsOfTheFileInTheDirectoryOfItsRun) {
    shell::swit& w = program_.main_window;
    for (const char* run : {"first", "second", "second"}) {
        directory_.write(std::string(run) + "/x.txt", run);
        const auto verdict = run == std::string("first") ? codec::Verdict::damaged : codec::Verdict::verified;
        add_results(w, directory_.path(run), {{"x.txt", codec::Outcome{verdict, 6, {}}}});
    }
    EXPECT_THAT(list().items(), ElementsAre("x.txt", "x.txt"));
    EXPECT_EQ(result_row(w, 0).verdict, codec::Verdict::damaged);
    EXPECT_EQ(result_row(w, 1).verdict, codec::Verdict::verified);

    list().selected = 0;
    program_.platform.expect_message(will_load);
    double_click();
    EXPECT_THAT(program_.platform.opened, ElementsAre(directory_.path("first/x.txt")));
    program_.platform.expect_input("Enter a new name", "y.txt");
    click(w.Command5);
    EXPECT_TRUE(directory_.has("first/y.txt"));
    EXPECT_EQ(row_details(w, 1).size, "6 bytes");
    program_.platform.expect_question("delete the file called y.txt?", true);
    click(w.Command7);
    EXPECT_FALSE(directory_.has("first/y.txt"));
    EXPECT_EQ(result_path(w, 0), directory_.path("second/x.txt"));
}

TEST_F(ResultsPanel, ARowInOtherCapitalsIsOfTheSameFile) {
    directory_.write("Letter.TXT", "text");
    list().add("letter.txt");
    list().selected = 0;
    EXPECT_EQ(row_details(program_.main_window, 0).size, "4 bytes");
    program_.platform.expect_input("Enter a new name", "a.txt");
    click(program_.main_window.Command5);
    EXPECT_THAT(directory_.names(), ElementsAre("a.txt"));
    directory_.write("B.TXT", "text");
    list().add("b.txt");
    list().selected = 1;
    program_.platform.expect_question("delete the file called b.txt?", true);
    click(program_.main_window.Command7);
    EXPECT_THAT(directory_.names(), ElementsAre("a.txt"));
}

TEST_F(ResultsPanel, APictureWhoseRightNameIsADirectoryGetsTheNextOne) {
    directory_.make_directory("x.gif");
    found("x", "GIF89a");
    program_.platform.expect_message(will_load);
    double_click();
    EXPECT_THAT(program_.platform.opened, ElementsAre(directory_.path("x (2).gif")));
    EXPECT_THAT(list().items(), ElementsAre("x (2).gif"));
}

TEST_F(ResultsPanel, AnEmptyFileAndOneThatIsGoneLeadToTheRepairGuide) {
    for (const bool is_there : {true, false}) {
        found("nothing", "");
        if (!is_there) {
            ASSERT_TRUE(files::remove_file(directory_.path("nothing")));
        }
        program_.platform.expect_message("     This file was not decoded properly, it has a zero file size.");
        double_click();
        EXPECT_NE(program_.windows.loaded<Form3>(), nullptr);
        program_.windows.unload<Form3>();
    }
    EXPECT_THAT(program_.platform.opened, IsEmpty());
}

TEST_F(ResultsPanel, RenameMovesTheFileAndItsRecord) {
    found("3dgenerator", "text", codec::Outcome{codec::Verdict::verified, 4, {}});
    program_.platform.expect_input("   Enter a new name for the file called 3dgenerator", "letter.doc");
    click(program_.main_window.Command5);
    EXPECT_EQ(program_.platform.prompts.at(0).title, "Rename 3dgenerator");
    EXPECT_EQ(program_.platform.prompts.at(0).default_answer, "3dgenerator");
    EXPECT_THAT(list().items(), ElementsAre("letter.doc"));
    EXPECT_THAT(directory_.names(), ElementsAre("letter.doc"));
    EXPECT_EQ(result_row(program_.main_window, 0).verdict, codec::Verdict::verified);
}

TEST_F(ResultsPanel, RenameRefusesTakenNamesAndOtherDirectories) {
    directory_.write("taken", "mine");
    directory_.make_directory("below");
    found("x", "text");
    for (const char* name : {"taken", "below/x", "../x", "/x", ".."}) {
        program_.platform.expect_input("Enter a new name", name);
        program_.platform.expect_message("");
        click(program_.main_window.Command5);
    }
    EXPECT_EQ(program_.platform.messages.at(0), "taken: File exists");
    EXPECT_THAT(list().items(), ElementsAre("x"));
    EXPECT_EQ(directory_.read("taken"), "mine");
    EXPECT_THAT(directory_.names(), ElementsAre("below", "taken", "x"));
}

TEST_F(ResultsPanel, RenameToNothingOrTheSameNameChangesNothing) {
    found("x", "text");
    for (const char* name : {"", "x"}) {
        program_.platform.expect_input("Enter a new name", name);
        click(program_.main_window.Command5);
    }
    EXPECT_THAT(list().items(), ElementsAre("x"));
    list().selected.reset();
    click(program_.main_window.Command5);
}

TEST_F(ResultsPanel, EraseAsksFirstAndTheLastOneDisablesWhatNeedsAFile) {
    shell::swit& w = program_.main_window;
    found("a", "1");
    found("b", "2");
    program_.platform.expect_question("    Are you sure you wish to delete the file called b?", false);
    click(w.Command7);
    EXPECT_TRUE(program_.platform.questions.at(0).no_is_default);
    EXPECT_THAT(directory_.names(), ElementsAre("a", "b"));

    program_.platform.expect_question("the file called b?", true);
    click(w.Command7);
    EXPECT_THAT(list().items(), ElementsAre("a"));
    EXPECT_THAT(directory_.names(), ElementsAre("a"));
    EXPECT_TRUE(w.Command7.enabled);

    program_.platform.expect_message("You have not yet selected a file to erase.");
    click(w.Command7);

    list().selected = 0;
    program_.platform.expect_question("the file called a?", true);
    click(w.Command7);
    EXPECT_THAT(directory_.names(), IsEmpty());
    EXPECT_FALSE(w.Command5.enabled || w.Command7.enabled || w.Command8.enabled);
    EXPECT_TRUE(w.Command4.enabled && w.Command6.enabled);
}

TEST_F(ResultsPanel, ErasedFileGoesToTheTrashAndIsDeletedOnlyWithConsent) {
    found("a", "1");
    program_.platform.expect_question("moved to the trash", true);
    click(program_.main_window.Command7);
    EXPECT_THAT(program_.platform.trashed, ElementsAre(directory_.path("a")));

    found("b", "2");
    program_.platform.trash_works = false;
    program_.platform.expect_question("the file called b?", true);
    program_.platform.expect_question("delete it for good?", false);
    click(program_.main_window.Command7);
    EXPECT_THAT(list().items(), ElementsAre("b"));
    EXPECT_THAT(directory_.names(), ElementsAre("b"));
    program_.platform.expect_question("the file called b?", true);
    program_.platform.expect_question("delete it for good?", true);
    click(program_.main_window.Command7);
    EXPECT_THAT(directory_.names(), IsEmpty());
}

TEST_F(ResultsPanel, FileThatNoProgramOpensIsGivenToAChosenOneAndAProgramIsRefusedInOneBox) {
    found("a.xyz", "1");
    program_.platform.opening_works = false;
    program_.platform.expect_message(will_load);
    program_.platform.expect_choice("No program on this computer", "&Choose a program...");
    program_.platform.expect_file_request("a.xyz", "/usr/bin/viewer");
    double_click();
    ASSERT_EQ(program_.platform.started.size(), 1U);
    EXPECT_EQ(program_.platform.started[0].program, "/usr/bin/viewer");
    EXPECT_THAT(program_.platform.started[0].arguments, ElementsAre(directory_.path("a.xyz")));

    program_.platform.runnable = {directory_.path("a.xyz")};
    double_click();  // the desktop's own refusal is the only box
    EXPECT_EQ(program_.platform.started.size(), 1U);
}

TEST_F(ResultsPanel, TheVirusCheckIsOfTheSelectedFileAndThatOfTheMainWindowOfTheInput) {
    std::string scanned;
    program_.routes.choose_scanner = [&](const std::string& path) { scanned = path; };
    program_.platform.expect_message("You have not yet selected a file.");
    click(program_.main_window.Command8);

    found("a.exe", "MZ");
    program_.platform.expect_question("would you like to do so now?", false);
    click(program_.main_window.Command8);
    EXPECT_EQ(scanned, "");
    EXPECT_EQ(program_.platform.questions.at(0).title, "No Anti-virus has been setup");
    EXPECT_TRUE(program_.platform.questions.at(0).no_is_default);

    program_.platform.expect_question("would you like to do so now?", true);
    click(program_.main_window.Command8);
    EXPECT_EQ(scanned, directory_.path("a.exe"));

    program_.session.SelectedDir = "/mail";
    program_.session.SelectedFile = "post.mim";
    program_.platform.expect_question("would you like to do so now?", true);
    controls::run(program_.routes.scan_file);
    EXPECT_EQ(scanned, "/mail/post.mim");
    EXPECT_THAT(program_.platform.started, IsEmpty());
}

TEST_F(ResultsPanel, HelpIsFourMessagesAndExitEndsTheProcess) {
    for (const char* part : {"misnamed", "rename button", "3dgenerator", ".pdf"})
        program_.platform.expect_message(part);
    click(program_.main_window.Command6);
    EXPECT_TRUE(program_.platform.script_is_done());
    EXPECT_TRUE(tests::ends_process([&] { click(program_.main_window.Command4); }));
}

TEST_F(ResultsPanel, ADisguisedProgramIsDoubtfulThoughWhole) {
    shell::swit& w = program_.main_window;
    found("photo.jpg.exe", "x", codec::Outcome{codec::Verdict::whole, 1, {*codec::disguise_of("photo.jpg.exe", 0)}});
    const RowDetails row = row_details(w, 0);
    EXPECT_TRUE(row.doubtful && row.disguised);
    EXPECT_THAT(row.problems, ElementsAre(testing::HasSubstr("it is a program (.exe)")));
}

TEST_F(ResultsPanel, ARowSaysSizeTypeVerdictAndWhatIsWrong) {
    shell::swit& w = program_.main_window;
    found("photo", jpeg + std::string(1234567 - jpeg.size(), '.'),
          codec::Outcome{codec::Verdict::damaged,
                         0,
                         {{codec::ProblemKind::quoted, 0, {}, "The lines are quoted"},
                          {codec::ProblemKind::text_after_data, 8, {}, "Text follows the data"},
                          {codec::ProblemKind::missing_end, 9, {}, "The end is missing"}}});
    found("letter.doc", "x", codec::Outcome{codec::Verdict::verified, 1, {}});
    found("gone.zip", "");
    EXPECT_TRUE(files::remove_file(directory_.path("gone.zip")));

    const RowDetails photo = row_details(w, 0);
    EXPECT_EQ(photo.size, "1,234,567 bytes");
    EXPECT_EQ(photo.icon, "image-x-generic");
    EXPECT_TRUE(photo.picture && photo.doubtful);
    EXPECT_EQ(photo.verdict, "damaged");
    EXPECT_THAT(photo.problems, ElementsAre("Text follows the data", "The end is missing", "The lines are quoted"));

    const RowDetails letter = row_details(w, 1);
    EXPECT_EQ(letter.size, "1 byte");
    EXPECT_EQ(letter.icon, "x-office-document");
    EXPECT_FALSE(letter.picture || letter.doubtful);
    EXPECT_EQ(letter.verdict, "verified");

    const RowDetails gone = row_details(w, 2);
    EXPECT_EQ(gone.size, "gone");
    EXPECT_EQ(gone.icon, "package-x-generic");
    EXPECT_TRUE(gone.doubtful);
    EXPECT_EQ(gone.verdict, "");
}

}  // namespace
}  // namespace quill::decoder
