#include "shell/main_workflow.h"

#include "files/directory.h"
#include "shell/about_box.h"
#include "shell/select_file.h"
#include "shell/startup.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quill::shell {
namespace {

using tests::Program;
using tests::TemporaryDirectory;

constexpr auto idle_1 = "Select/Open/View a file";
constexpr auto idle_2 = "Create compressed or encoded file";

/// The program after a plain start, each route recording its call.
class MainWindow : public testing::Test {
  protected:
    MainWindow() {
        dir.make_directory("quill/program/temp");
        dir.make_directory("quill/zip-htx directory/below");
        files::change_directory(dir.path("quill/program"));
        start(program.context);
    }

    void fill_routes() {
        Routes& routes = program.routes;
        routes.decode = [this](std::string& path) { way.push_back("decode " + path); };
        routes.open_chooser = [this](const std::string& directory) { way.push_back("chooser in " + directory); };
        routes.open_archive = [this] { way.push_back("archive in " + program.session.WorkDir); };
        routes.show_contents = [this] { way.push_back("contents"); };
        routes.scan_file = [this] { way.push_back("scan"); };
        routes.open_pics = [this](const std::string& path) { way.push_back("pics " + path); };
        routes.open_pictures = [this] { way.push_back("pictures"); };
        routes.open_favorites = [this] { way.push_back("favorites"); };
        routes.create_archive = [this] { way.push_back("create"); };
        routes.open_encoder = [this](const std::string& caption) { way.push_back(caption); };
        routes.make_picture_book = [this](const auto&) { way.push_back("picture book"); };
        routes.make_pics_file = [this](const auto&) { way.push_back("pics maker"); };
        routes.make_zip_default = [this] { way.push_back("zip default"); };
        routes.edit_file_types = [this] { way.push_back("file types"); };
    }

    /// Returns the routes called since the last call.
    std::vector<std::string> went() { return std::exchange(way, {}); }

    TemporaryDirectory dir;
    Program program;
    swit& w = program.main_window;
    std::vector<std::string> way;
};

using Ways = std::vector<std::string>;

TEST_F(MainWindow, EveryControlHasOneNameAndARole) {
    std::set<std::string> names;
    visit_controls(w, [&](const std::string& name, const std::string& role, const auto&) {
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_FALSE(role.empty()) << name;
    });
    EXPECT_TRUE(names.contains("apt(1)"));
    EXPECT_TRUE(names.contains("List3"));
}

TEST_F(MainWindow, IsIdleAfterAPlainStart) {
    EXPECT_EQ(w.apt(1).text, idle_1);
    EXPECT_EQ(w.apt(2).text, idle_2);
    EXPECT_EQ(w.apt(4).text, "Help");
    EXPECT_EQ(w.apt(5).text, "Cancel");
    EXPECT_TRUE(w.Picture1.visible);
    EXPECT_FALSE(w.Picture2.visible);
    EXPECT_FALSE(w.Picture4.visible);
    EXPECT_FALSE(w.Frame2.visible);
    EXPECT_EQ(w.caption, "Quillbright Pro 2012");
}

TEST_F(MainWindow, AnOptionUnderThePointerIsColoured) {
    const std::vector<controls::Colour> colours = {{0x00, 0xFF, 0x00}, {0xFF, 0xC0, 0xC0}, {0x00, 0xFF, 0xFF},
                                                   {0xFF, 0xFF, 0xC0}, {0xFF, 0xFF, 0xFF}, {0xFF, 0xFF, 0xFF}};
    for (int i = 1; i <= 6; ++i) {
        controls::run(w.apt(i).hover);
        for (int other = 1; other <= 6; ++other) {
            EXPECT_EQ(w.apt(other).colour, other == i ? colours[static_cast<std::size_t>(i - 1)] : w.opt(other).colour);
        }
    }
    for (const controls::Action& leave : {w.hover, w.Picture1.hover, w.Label8.hover}) {
        controls::run(w.opt(1).hover);
        EXPECT_NE(w.apt(1).colour, w.opt(1).colour);
        controls::run(leave);
        EXPECT_EQ(w.apt(1).colour, w.opt(1).colour);
    }
}

TEST_F(MainWindow, TheFirstOptionTakesItsWayByTheEndOfItsCaption) {
    fill_routes();
    const std::string in = dir.path("quill");
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"x.mim", "decode " + in + "/x.mim"},
        {"x.zip", "archive in " + in + "/program/temp"},
        {"X.HTX", "archive in " + in + "/program/temp"},
        {"a.pics", "pics " + in + "/a.pics"},
        {"mypics", "pics " + in + "/mypics"},  // no dot is needed
        {"a.PIC", "pics " + in + "/a.PIC"},
        {"zip", "decode " + in + "/zip"},
        {"x.zip.mim", "decode " + in + "/x.zip.mim"},
    };
    for (const auto& [name, way_taken] : cases) {
        offer_file(program.context, in + "/" + name);
        EXPECT_EQ(w.apt(1).text, "Decode/open " + name);
        EXPECT_EQ(w.apt(2).text, "Virus Scan " + name);
        controls::run(w.apt(1).click);
        EXPECT_EQ(went(), Ways{way_taken}) << name;
    }
}

TEST_F(MainWindow, AnIdleFirstOptionOpensTheChooser) {
    fill_routes();
    controls::run(w.ope.click);
    EXPECT_EQ(went(), Ways{"chooser in " + dir.path("quill/zip-htx directory")});
    EXPECT_EQ(files::current_directory(), dir.path("quill"));
}

TEST_F(MainWindow, AnotherFileIsChosenBesideTheOneInHandAndHidesItsResults) {
    fill_routes();
    offer_file(program.context, dir.write("mail/a.mim", "x"));
    w.Picture2.visible = true;
    controls::run(w.another.click);
    EXPECT_EQ(went(), Ways{"chooser in " + dir.path("mail")});
    EXPECT_TRUE(w.Picture2.visible);  // until one is chosen
    offer_file(program.context, dir.write("mail/b.mim", "x"));
    EXPECT_FALSE(w.Picture2.visible);
}

TEST_F(MainWindow, AFileOfferedWhileTheWizardShowsIsSeenAndAnArchiveCanBeListed) {
    controls::run(w.apt(2).click);
    controls::run(w.Opti(5).click);
    EXPECT_TRUE(w.Picture4.visible && w.Frame2.visible);
    offer_file(program.context, dir.write("a.ZIP", "PK"));
    EXPECT_FALSE(w.Picture4.visible || w.Frame1.visible || w.Frame2.visible);
    EXPECT_TRUE(w.Timer2.enabled);
    EXPECT_EQ(w.apt(1).text, "Decode/open a.ZIP");
    EXPECT_TRUE(w.apt(3).visible && w.opt(3).visible);
    offer_file(program.context, dir.write("empty.zip", ""));
    EXPECT_FALSE(w.apt(3).visible || w.opt(3).visible);
}

TEST_F(MainWindow, WithoutAChooserTheDesktopAsksForTheFile) {
    const std::string zip = dir.write("a.zip", "PK");
    program.platform.expect_file_request("Select a file to open, view or decode", zip);
    controls::run(w.apt(1).click);
    EXPECT_EQ(w.apt(1).text, "Decode/open a.zip");
    EXPECT_EQ(w.Label3.text, zip);
    EXPECT_TRUE(w.apt(3).visible);
    EXPECT_EQ(program.session.WorkDir, dir.path());

    offer_file(program.context, dir.path("b.mim"));
    EXPECT_FALSE(w.apt(3).visible);
}

TEST_F(MainWindow, AFileWithoutContentsIsNotOffered) {
    program.platform.expect_file_request("Select a file", dir.write("empty.mim", ""));
    program.platform.expect_message("This file has no contents");
    controls::run(w.apt(1).click);
    EXPECT_EQ(w.apt(1).text, idle_1);
    EXPECT_EQ(w.Label3.text, "");

    program.platform.expect_file_request("Select a file", "");
    controls::run(w.apt(1).click);
    EXPECT_EQ(w.apt(1).text, idle_1);
}

TEST_F(MainWindow, APicsFileEmptiesTheTempDirectoryAndLeavesTheWindowIdle) {
    fill_routes();
    dir.write("quill/program/temp/old.jpg", "x");
    dir.write("quill/program/temp/below/kept.jpg", "x");
    offer_file(program.context, dir.path("a.pics"));
    controls::run(w.apt(1).click);
    EXPECT_FALSE(dir.has("quill/program/temp/old.jpg"));
    EXPECT_TRUE(dir.has("quill/program/temp/below/kept.jpg"));
    EXPECT_EQ(w.apt(1).text, idle_1);
    EXPECT_EQ(w.apt(2).text, idle_2);
}

TEST_F(MainWindow, TheSecondOptionScansASelectedFile) {
    fill_routes();
    offer_file(program.context, dir.path("a.mim"));
    controls::run(w.crzip.click);
    EXPECT_EQ(went(), Ways{"scan"});
    EXPECT_FALSE(w.Picture4.visible);
}

TEST_F(MainWindow, TheSecondOptionOpensTheCreateWizard) {
    w.Opti(1).chosen = true;
    controls::run(w.apt(2).click);
    EXPECT_TRUE(w.Picture4.visible);
    EXPECT_TRUE(w.Frame1.visible);
    EXPECT_FALSE(w.Frame2.visible);
    EXPECT_FALSE(w.Opti(1).chosen);
    EXPECT_EQ(w.Label4.text, "Step One - Select a directory to create the new ZIP file in");
    EXPECT_EQ(w.Command1.caption, "&Next >");
    EXPECT_EQ(w.Dir1.path, dir.path("quill/zip-htx directory"));
    EXPECT_EQ(files::current_directory(), w.Dir1.path);
    EXPECT_FALSE(w.Timer2.enabled);

    w.Label5.text = "x";
    controls::run(w.Opti(2).click);
    controls::run(w.Opti(4).click);
    EXPECT_FALSE(w.Picture4.visible);
    EXPECT_FALSE(w.Frame1.visible);
    EXPECT_EQ(w.Label5.text, "");
    EXPECT_TRUE(w.Timer2.enabled);
    controls::run(w.apt(2).click);
    EXPECT_EQ(w.Label2.text, "");
}

TEST_F(MainWindow, AZipFileIsCreatedFromTheFirstPanel) {
    fill_routes();
    controls::run(w.apt(2).click);
    controls::run(w.Opti(1).click);
    EXPECT_EQ(went(), Ways{"create"});
    EXPECT_EQ(w.Label2.text, "Creating a new ZIP file");
    EXPECT_EQ(w.Label5.text, w.Dir1.path);
    EXPECT_FALSE(w.Frame1.visible);
    EXPECT_TRUE(w.Picture4.visible);
}

TEST_F(MainWindow, TheEncodedKindsOpenTheChooserUnderTheirOwnCaption) {
    fill_routes();
    const std::vector<std::pair<int, std::string>> kinds = {{0, "Create a UUE encoded file"},
                                                            {1, "Create a MIME encoded file"},
                                                            {2, "Create an XXEncoded file"},
                                                            {4, "Create a yEncoded file"}};
    for (const auto& [index, caption] : kinds) {
        controls::run(w.apt(2).click);
        EXPECT_EQ(w.Opti(5).width, 3200);
        controls::run(w.Opti(2).click);  // another choice: no heading of books is left
        controls::run(w.Opti(5).click);
        EXPECT_EQ(w.Label2.text, "");
        EXPECT_EQ(w.Opti(5).width, 3000);
        EXPECT_TRUE(w.Frame2.visible);
        EXPECT_EQ(w.Option2(index).caption, caption);
        controls::run(w.Option2(index).click);
        EXPECT_EQ(went(), Ways{caption});
        EXPECT_FALSE(w.Picture4.visible || w.Frame1.visible || w.Frame2.visible);
    }
}

TEST_F(MainWindow, TheKindsOfPagesAndPicturesTakeTheirOwnWays) {
    fill_routes();
    const std::vector<std::pair<int, std::string>> kinds = {{0, "create"}, {1, "pics maker"}, {2, "picture book"}};
    for (const auto& [index, route] : kinds) {
        controls::run(w.apt(2).click);
        controls::run(w.Opti(5).click);  // the other set was shown before
        controls::run(w.Opti(2).click);
        EXPECT_EQ(w.Label2.text, "Creating an HTX multi-page file");
        controls::run(w.Option2(index).click);
        EXPECT_EQ(went(), Ways{route});
        EXPECT_FALSE(w.Frame1.visible || w.Frame2.visible);
        EXPECT_EQ(w.Picture4.visible, index == 0);
    }
}

TEST_F(MainWindow, TheLastKindExplainsTheOtherThree) {
    controls::run(w.apt(2).click);
    controls::run(w.Opti(2).click);
    for (const char* kind : {"HTX", "PICS", "picture book"}) program.platform.expect_message(kind);
    controls::run(w.Option2(4).click);
    EXPECT_TRUE(w.Frame2.visible);
    controls::run(w.Option4.click);
    EXPECT_FALSE(w.Picture4.visible || w.Frame1.visible || w.Frame2.visible);
    for (const char* kind : {"ZIP", "HTX", "PICS", "yEnc"}) program.platform.expect_message(kind);
    controls::run(w.Opti(3).click);
}

TEST_F(MainWindow, AnyOptionHidesTheKinds) {
    fill_routes();
    controls::run(w.apt(2).click);
    controls::run(w.Opti(5).click);
    w.Option1.chosen = false;
    controls::run(w.apt(1).click);
    EXPECT_FALSE(w.Frame2.visible);
    EXPECT_EQ(w.Opti(5).width, 3200);
    EXPECT_TRUE(w.Option1.chosen);
}

TEST_F(MainWindow, TheWizardFollowsItsDirectory) {
    controls::run(w.apt(2).click);
    w.Dir1.path += "/below";
    controls::run(w.Dir1.change);
    EXPECT_EQ(w.Label5.text, dir.path("quill/zip-htx directory/below"));
    EXPECT_EQ(program.session.WorkDir, w.Label5.text);
    EXPECT_EQ(files::current_directory(), w.Label5.text);

    w.Drive1.drive = "/";
    controls::run(w.Drive1.change);
    EXPECT_EQ(w.Dir1.path, "/");
    EXPECT_EQ(program.session.WorkDir, "/");
    EXPECT_EQ(files::current_directory(), "/");
}

TEST_F(MainWindow, MenusTakeTheirWays) {
    fill_routes();
    for (const controls::MenuItem* item : {&w.mpics, &w.ofpl, &w.mkzipdef, &w.reged}) controls::run(item->click);
    controls::run(w.opt(3).click);
    EXPECT_EQ(went(), (Ways{"pictures", "favorites", "zip default", "file types", "contents"}));
    EXPECT_EQ(files::current_directory(), dir.path("quill/zip-htx directory"));
    const bool checked = w.xpth.checked;
    controls::run(w.xpth.click);
    EXPECT_NE(w.xpth.checked, checked);
}

TEST_F(MainWindow, WhatIsMissingIsSaidPlainlyAndLeavesNoPanelBehind) {
    const auto click = [&](const controls::Action& action, const std::string& what) {
        program.platform.expect_message("Quillbright Pro can't " + what);
        controls::run(action);
    };
    click(w.mpics.click, "show pictures yet.");
    click(w.ofpl.click, "show lists");
    click(w.mkzipdef.click, "become the default");
    click(w.reged.click, "change the programs");
    click(w.opt(3).click, "list what ZIP");
    controls::run(w.apt(2).click);
    click(w.Opti(1).click, "make ZIP files");
    EXPECT_FALSE(w.Picture4.visible);
    controls::run(w.apt(2).click);
    controls::run(w.Opti(5).click);
    click(w.Option2(0).click, "make encoded files");
    EXPECT_FALSE(w.Picture4.visible);
    offer_file(program.context, dir.path("a.mim"));
    click(w.apt(1).click, "decode files");
    click(w.apt(2).click, "have files checked");
    offer_file(program.context, dir.write("a.pics", "x"));
    click(w.apt(1).click, "open PICS");
    EXPECT_EQ(w.apt(1).text, "Decode/open a.pics");
}

TEST_F(MainWindow, ClosingItEndsTheProcessInEveryWay) {
    for (const controls::Action& way_out : {w.close, w.exi.click, w.apt(5).click, w.opt(5).click}) {
        EXPECT_TRUE(tests::ends_process(way_out));
    }
}

TEST_F(MainWindow, HelpOpensTheAboutWindow) {
    controls::run(w.apt(4).click);
    auto* about = program.windows.loaded<AboutBox>();
    ASSERT_NE(about, nullptr);
    EXPECT_EQ(about->Label2.text, "Version " + std::string(version()));
    controls::run(about->Command1.click);
    EXPECT_EQ(program.windows.loaded<AboutBox>(), nullptr);
    controls::run(w.abzip.click);
    EXPECT_NE(program.windows.loaded<AboutBox>(), nullptr);
}

TEST_F(MainWindow, TheGuideIsTheOneInstalledUnlessOneLiesInTheProgramsDirectory) {
    program.platform.path_of_guide = "/share/qbguide.html";
    controls::run(w.rdhlp.click);
    const std::string own = dir.write("quill/program/qbguide.hlp", "x");
    program.platform.expect_question("read the help file now?", true);
    controls::run(w.huse.click);
    program.platform.expect_question("read the help file now?", false);
    controls::run(w.huse.click);
    EXPECT_EQ(program.platform.opened, (Ways{"/share/qbguide.html", own}));
}

TEST_F(MainWindow, AGuideThatCannotBeOpenedIsSaid) {
    program.platform.expect_message("it is not installed");
    controls::run(w.rdhlp.click);
    program.platform.path_of_guide = "/share/qbguide.html";
    program.platform.opening_works = false;
    program.platform.expect_message("no program shows /share/qbguide.html");
    controls::run(w.rdhlp.click);
}

TEST_F(MainWindow, TheIntroductionTellsOfEveryEncoding) {
    std::string all;
    for (int i = 0; i < 5; ++i) program.platform.expect_message("");
    controls::run(w.intro.click);
    for (const std::string& text : program.platform.messages) all += text;
    for (const char* word : {"MIME", "uuencode", "XXencode", "yEnc", "BinHex", "ZIP", "HTX", "PICS"}) {
        EXPECT_NE(all.find(word), std::string::npos) << word;
    }
}

}  // namespace
}  // namespace quill::shell
