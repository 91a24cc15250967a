#include "decoder/naming_window.h"
#include "encoder/chooser_fixture.h"
#include "files/directory.h"
#include "shell/main_window.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quill::encoder {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(FileChooser, EveryModeHasItsCaptionAndItsFiles) {
    dir_.write("mail/a.ZIP", "x");
    dir_.write("mail/b.html", "x");
    dir_.write("mail/c", "x");
    dir_.write("mail/.hidden", "x");
    std::filesystem::permissions(dir_.path("mail/c"), std::filesystem::perms::owner_all);
    const struct {
        ChooserMode mode;
        std::string_view caption;
        std::vector<std::string> files;
        bool has_pages;
    } cases[] = {
        {ChooserMode::open_archive, "Select a ZIP or HTX file to open or view", {"a.ZIP"}, false},
        {ChooserMode::open, "Select a file to open, view or decode", {"a.ZIP", "b.html", "c"}, true},
        {ChooserMode::decode, "Select a file to decode", {"a.ZIP", "b.html", "c"}, true},
        {ChooserMode::anti_virus, "Select the anti-virus program you wish to use", {"c"}, false},
        {ChooserMode::collect_pages, "Select .htm or .html files to copy into a new HTX file", {"b.html"}, false},
        {ChooserMode::encode_yenc, "Create a yEncoded file", {"a.ZIP", "b.html", "c"}, false},
    };
    for (const auto& c : cases) {
        cmdg& w = show(c.mode);
        EXPECT_EQ(w.caption, c.caption);
        EXPECT_EQ(w.mode(), c.mode);
        EXPECT_EQ(w.File1.items(), c.files) << c.caption;
        EXPECT_EQ(w.List1.items(), c.files) << c.caption;
        EXPECT_EQ(w.Image1.enabled, c.has_pages) << c.caption;
    }
    cmdg& w = show(ChooserMode::open);
    w.hidden_files.checked = true;
    controls::run(w.hidden_files.click);
    EXPECT_THAT(w.File1.items(), ElementsAre(".hidden", "a.ZIP", "b.html", "c"));
}

TEST_F(FileChooser, AnOpenedFileIsOfferedByTheMainWindow) {
    dir_.write("mail/book.HTX", "x");
    dir_.write("mail/post.uue", "x");
    shell::swit& main = program_.main_window;
    program_.session.ZipPassword = "old";

    select(show(ChooserMode::open).File1, "book.HTX");
    controls::run(program_.windows.loaded<cmdg>()->File1.double_click);
    EXPECT_FALSE(is_loaded());
    EXPECT_EQ(program_.session.SelectedDir, dir_.path("mail"));
    EXPECT_EQ(program_.session.SelectedFile, "book.HTX");
    EXPECT_EQ(program_.session.ZipPassword, "");
    EXPECT_EQ(main.apt(1).text, "Decode/open book.HTX");
    EXPECT_EQ(main.apt(2).text, "Virus Scan book.HTX");
    EXPECT_TRUE(main.apt(3).visible);
    EXPECT_EQ(main.Label3.text, dir_.path("mail/book.HTX"));

    select(show(ChooserMode::open).File1, "post.uue");
    controls::run(program_.windows.loaded<cmdg>()->Command1.click);
    EXPECT_EQ(main.apt(1).text, "Decode/open post.uue");
    EXPECT_FALSE(main.apt(3).visible);
}

TEST_F(FileChooser, NothingSelectedIsSaidAndTheWindowStays) {
    dir_.write("mail/empty", "");
    const struct {
        ChooserMode mode;
        std::string message;
    } cases[] = {
        {ChooserMode::open, "  No file was selected, if you do not wish to select a file, click on the Cancel button."},
        {ChooserMode::anti_virus, "You did not select a program name."},
        {ChooserMode::collect_files, "  No file was selected"},
        {ChooserMode::encode_uue, "  No file was selected"},
        {ChooserMode::encode_yenc, "  No file was selected"},
    };
    for (const auto& c : cases) {
        cmdg& w = show(c.mode);
        w.File1.selected.reset();
        program_.platform.expect_message(c.message);
        controls::run(w.Command1.click);
        EXPECT_TRUE(is_loaded());
    }
    cmdg& w = show(ChooserMode::open);
    select(w.File1, "empty");
    program_.platform.expect_message("This file has no contents");
    controls::run(w.Command1.click);
    EXPECT_FALSE(is_loaded());
    EXPECT_EQ(program_.main_window.Label3.text, "");
}

TEST_F(FileChooser, AnEmptyFileLeavesNoOlderFileOnOffer) {
    dir_.write("mail/book.zip", "x");
    dir_.write("mail/empty", "");
    select(show(ChooserMode::open).File1, "book.zip");
    controls::run(program_.windows.loaded<cmdg>()->Command1.click);
    select(show(ChooserMode::open).File1, "empty");
    program_.platform.expect_message("This file has no contents");
    controls::run(program_.windows.loaded<cmdg>()->Command1.click);
    EXPECT_EQ(program_.main_window.apt(1).text, "Select/Open/View a file");
    EXPECT_EQ(program_.main_window.Label3.text, "");
    EXPECT_FALSE(program_.main_window.apt(3).visible);
}

TEST_F(FileChooser, TheSelectionFollowsItsFileAndEndsWithItsDirectory) {
    dir_.write("mail/b", "x");
    dir_.write("mail/c.htm", "x");
    dir_.write("other/b", "other");
    dir_.write("other/c.htm", "x");
    cmdg& w = show(ChooserMode::open);
    dir_.write("mail/a", "came later");
    select(w.File1, "b");
    EXPECT_THAT(w.File1.items(), ElementsAre("a", "b", "c.htm"));
    EXPECT_EQ(w.File1.selected_item(), "b");
    files::remove_file(dir_.path("mail/a"));
    select(w.File1, "c.htm");
    controls::run(w.Option1.click);
    EXPECT_THAT(w.List1.items(), ElementsAre("c.htm"));
    EXPECT_EQ(w.File1.selected_item(), "c.htm");
    controls::run(w.Option2.click);
    select(w.File1, "b");
    controls::run(w.Option1.click);
    EXPECT_EQ(w.File1.selected, std::nullopt);
    controls::run(w.Option2.click);
    select(w.File1, "b");
    w.Dir1.path = dir_.path("other");
    const auto before = w.File1.revision();
    controls::run(w.Dir1.change);
    EXPECT_EQ(w.File1.selected, std::nullopt);
    EXPECT_NE(w.File1.revision(), before);
}

TEST_F(FileChooser, AnotherModeFindsNothingOfTheLastOne) {
    dir_.write("mail/a", "x");
    cmdg& w = show(ChooserMode::collect_files);
    select(w.File1, "a");
    controls::run(w.Command1.click);
    EXPECT_EQ(w.Command2.caption, "Done");
    show(ChooserMode::open);
    EXPECT_EQ(w.Command2.caption, "Cancel");
    EXPECT_THAT(w.List2.items(), IsEmpty());
    EXPECT_TRUE(w.Option2.chosen);
    w.Image1.press(2475);
    show(ChooserMode::collect_pages);
    EXPECT_FALSE(w.Picture2.visible);
    EXPECT_TRUE(w.Option1.chosen);
    EXPECT_FALSE(w.Option2.chosen);
}

TEST_F(FileChooser, CollectingTakesEachNameOnceAndStaysOpenUntilDone) {
    for (const char* name : {"mail/a", "mail/b", "mail/c"}) dir_.write(name, "x");
    cmdg& w = show(ChooserMode::collect_files);
    std::vector<std::string> hunted;
    w.routes.hunt_links = [&](const std::string& path) { hunted.push_back(path); };
    w.File1.selected = 0;
    w.File1.selected_rows = {0, 2};
    controls::run(w.Command1.click);
    w.File1.selected_rows = {0, 1};
    controls::run(w.Command1.click);
    shell::swit& main = program_.main_window;
    EXPECT_THAT(w.List2.items(), ElementsAre("a", "c", "b"));
    EXPECT_THAT(main.List1.items(), ElementsAre("a", "c", "b"));
    EXPECT_THAT(main.List2.items(), ElementsAre(dir_.path("mail/a"), dir_.path("mail/c"), dir_.path("mail/b")));
    EXPECT_EQ(hunted, main.List2.items());
    EXPECT_EQ(main.Label12.text, "3 files");
    EXPECT_EQ(main.Label4.text, "Step Four - Copy files into the zip file and compress them.");
    EXPECT_EQ(w.Command2.caption, "Done");
    bool next_step = false;
    main.Command1.click = [&] { next_step = true; };
    controls::run(w.Command2.click);
    EXPECT_TRUE(next_step);
    EXPECT_FALSE(is_loaded());
}

TEST_F(FileChooser, TheAntiVirusProgramIsStartedOnTheSelectedFileAsAnArgument) {
    dir_.write("mail/scan me.zip", "x");
    dir_.write("mail/scanner", "x");
    std::filesystem::permissions(dir_.path("mail/scanner"), std::filesystem::perms::owner_all);
    program_.session.SelectedDir = dir_.path("mail");
    program_.session.SelectedFile = "scan me.zip";
    select(show(ChooserMode::anti_virus).File1, "scanner");
    controls::run(program_.windows.loaded<cmdg>()->Command1.click);
    ASSERT_EQ(program_.platform.started.size(), 1U);
    EXPECT_EQ(program_.platform.started[0].program, dir_.path("mail/scanner"));
    EXPECT_THAT(program_.platform.started[0].arguments, ElementsAre(dir_.path("mail/scan me.zip")));
    EXPECT_FALSE(is_loaded());
}

TEST_F(FileChooser, AnEncodingModeEncodesTheSelectedFileBesideIt) {
    dir_.write("mail/photo.jpg", "picture");
    for (const auto& [mode, output] :
         {std::pair{ChooserMode::encode_uue, "mail/photo.UUE"}, {ChooserMode::encode_yenc, "mail/photo.ync"}}) {
        select(show(mode).File1, "photo.jpg");
        program_.platform.expect_message("Done.");
        controls::run(program_.windows.loaded<cmdg>()->Command1.click);
        EXPECT_TRUE(files::file_size(dir_.path(output)).value_or(0) > 0) << output;
        EXPECT_FALSE(is_loaded());
    }
}

TEST_F(FileChooser, FavoritesLeadToTheirDirectories) {
    dir_.write("favorites/Mail.hyp", dir_.path("mail") + "/^My mail\r\n");
    dir_.write("favorites/gone.hyp", dir_.path("gone") + "/^Gone\r\n");
    dir_.write("mail/post", "x");
    cmdg& w = show_chooser(program_.context, ChooserMode::open, dir_.path());
    EXPECT_THAT(w.List5.items(), ElementsAre("My mail"));
    select(w.List5, "My mail");
    EXPECT_EQ(w.Dir1.path, dir_.path("mail"));
    EXPECT_EQ(w.chosenDir, dir_.path("mail") + "/");
    EXPECT_THAT(w.File1.items(), ElementsAre("post"));
    w.Dir1.path = "/";
    controls::run(w.Dir1.change);
    EXPECT_EQ(w.chosenDir, "/");
}

TEST_F(FileChooser, ADirectoryBecomesAFavorite) {
    cmdg& w = show(ChooserMode::open);
    controls::run(w.Label3.click);
    auto* const window = program_.windows.loaded<decoder::Form4>();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->caption, "Make a directory link");
    EXPECT_EQ(window->Dir1.path, dir_.path("mail"));
    program_.platform.expect_input("Enter a Name to show for a shortcut to this directory, " + dir_.path("mail"), "");
    program_.platform.expect_message("   You must type in a screen name");
    controls::run(window->Command1.click);
    program_.platform.expect_input("Enter a Name", "Mail, old");
    controls::run(window->Command1.click);
    EXPECT_EQ(program_.windows.loaded<decoder::Form4>(), nullptr);
    EXPECT_THAT(w.List5.items(), ElementsAre("Mail, old"));
    EXPECT_THAT(w.List6.items(), ElementsAre(dir_.path("mail")));

    // A caption that can't be a file name: nothing is written, and the window still closes.
    controls::run(w.Label3.click);
    program_.platform.expect_input("Enter a Name", "a/b");
    program_.platform.expect_message("The shortcut could not be added");
    controls::run(program_.windows.loaded<decoder::Form4>()->Command1.click);
    EXPECT_EQ(program_.windows.loaded<decoder::Form4>(), nullptr);
    EXPECT_THAT(w.List5.items(), ElementsAre("Mail, old"));
}

TEST_F(FileChooser, ATypedPathIsEnteredOrItsFileSelected) {
    dir_.write("mail/post", "x");
    dir_.write("mail/.draft", "x");
    program_.platform.directory_of_user = dir_.path("mail");
    const std::string mail = dir_.path("mail");
    const struct {
        std::string typed;
        std::string directory;
        std::string selected;
    } cases[] = {
        {dir_.path("mail/post"), mail, "post"},
        {"..", dir_.path(), ""},
        {"mail/", mail, ""},
        {"~/post", mail, "post"},
        {"../mail/post", mail, "post"},
        {"/", "/", ""},
        {"~", mail, ""},
        {".draft", mail, ".draft"},
        {"", mail, ".draft"},
    };
    cmdg& w = show_chooser(program_.context, ChooserMode::open, dir_.path());
    for (const auto& c : cases) {
        w.Text1.text = c.typed;
        controls::run(w.go.click);
        EXPECT_EQ(w.Dir1.path, c.directory) << c.typed;
        EXPECT_EQ(w.Text1.text, c.directory) << c.typed;
        EXPECT_EQ(w.File1.selected_item(), c.selected) << c.typed;
    }
    EXPECT_TRUE(w.hidden_files.checked);
    w.Text1.text = "nowhere";
    program_.platform.expect_message("There is no file or directory called " + dir_.path("mail/nowhere"));
    controls::run(w.go.click);
    EXPECT_EQ(w.Text1.text, mail);
    cmdg& archives = show(ChooserMode::open_archive);
    archives.Text1.text = "post";
    controls::run(archives.go.click);
    EXPECT_EQ(archives.File1.selected_item(), "post");
    cmdg& programs = show(ChooserMode::anti_virus);
    programs.Text1.text = "post";
    program_.platform.expect_message("post is not a file that can be chosen here.");
    controls::run(programs.go.click);
    EXPECT_EQ(programs.File1.selected, std::nullopt);
}

TEST_F(FileChooser, ADriveOrDirectoryThatCannotBeReadIsSaidAndTheWindowStaysWhereItIs) {
    cmdg& w = show(ChooserMode::open);
    const std::string drive = w.Drive1.drive;
    for (controls::DriveListBox* const list : {&w.Drive1, &w.Drive2}) {
        list->drive = dir_.path("no disk");
        program_.platform.expect_message("No such file or directory");
        controls::run(list->change);
        EXPECT_EQ(list->drive, drive);
        EXPECT_EQ(w.Dir1.path, dir_.path("mail"));
    }
    for (controls::DirListBox* const list : {&w.Dir1, &w.Dir2}) {
        list->path = dir_.path("gone meanwhile");
        program_.platform.expect_message("No such file or directory");
        controls::run(list->change);
        EXPECT_EQ(list->path, dir_.path("mail"));
    }
    w.Drive2.drive = "/";
    controls::run(w.Drive2.change);
    EXPECT_EQ(w.Dir1.path, "/");
    EXPECT_EQ(w.Dir2.path, "/");
    EXPECT_EQ(w.Drive1.drive, "/");
}

TEST_F(FileChooser, TheTabsShowRecentDirectoriesOrTheMergePage) {
    cmdg& w = show(ChooserMode::open);
    EXPECT_FALSE(w.Picture2.visible);
    w.Image1.press(2474);
    EXPECT_TRUE(w.Picture2.visible);
    EXPECT_FALSE(w.Picture3.visible);
    w.Image1.press(2475);
    EXPECT_TRUE(w.Picture3.visible);
    controls::run(w.Image2.click);
    EXPECT_FALSE(w.Picture2.visible);
    cmdg& archives = show(ChooserMode::open_archive);
    archives.Image1.press(0);
    EXPECT_FALSE(archives.Picture2.visible);
}

TEST_F(FileChooser, DirectoriesWhereFilesWereChosenAreRecentOnesUntilCleared) {
    dir_.write("mail/post.uue", "x");
    dir_.write("news/post.uue", "x");
    const auto choose_in = [&](const char* name) {
        cmdg& w = show(ChooserMode::open);
        enter_directory(w, dir_.path(name));
        select(w.File1, "post.uue");
        controls::run(w.Command1.click);
    };
    for (const char* name : {"mail", "news", "mail"}) choose_in(name);
    cmdg& w = show(ChooserMode::open);
    EXPECT_EQ(w.List9.items(), (std::vector{dir_.path("mail"), dir_.path("news")}));
    w.List9.selected = 1;
    controls::run(w.List9.change);
    EXPECT_EQ(w.File1.directory(), dir_.path("news"));
    controls::run(w.Option3.click);
    controls::run(w.Command11.click);
    EXPECT_EQ(show(ChooserMode::open).List9.count(), 0U);
}

}  // namespace
}  // namespace quill::encoder
