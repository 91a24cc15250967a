#include "htx/making/create_wizard.h"

#include "archive/container/archive.h"
#include "encoder/file_chooser.h"
#include "htx/spider/timmy.h"
#include "shell/main_workflow.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::htx {
namespace {

using controls::run;
using encoder::cmdg;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// The program at the first step of the wizard, with a site in the directory.
class CreateWizard : public testing::Test, protected tests::Program {
  protected:
    CreateWizard() {
        session.AppParentDir = directory.path();
        directory.make_directory("zip-htx directory");
        directory.write("site/index.htm", "<a href=\"two.htm\"><img src=\"a.gif\"><IMG SRC='b.png'>\r\n");
        directory.write("site/two.htm",
                        "<a href=\"deep/three.html#x\"><a href=\"deep/three.html\"><a href=\"gone.htm\">");
        directory.write("site/deep/three.html", "<a href=\"../index.htm\">");
        for (const char* name : {"site/a.gif", "site/b.png"}) directory.write(name, name);
        shell::connect_main_window(context);
        provide_create_wizard(context);
    }

    void begin(bool book) {
        run(w.opt(2).click);
        w.Opti(book ? 2 : 1).chosen = true;
        run(w.Opti(book ? 2 : 1).click);
        if (book) run(w.Option2(0).click);
        EXPECT_THAT(w.Label4.text, StartsWith("Step One"));
    }
    void next() { run(w.Command1.click); }
    /// Names the file, and moves on to the chooser, which is in `site`.
    cmdg& go_to_chooser(const std::string& name) {
        next();
        w.Text2.text = name;
        next();
        auto* chooser = windows.loaded<cmdg>();
        if (chooser == nullptr) throw std::runtime_error("the chooser did not open");
        encoder::enter_directory(*chooser, directory.path("site"));
        return *chooser;
    }
    static void select(cmdg& chooser, const std::vector<std::string>& names) {
        chooser.File1.selected_rows.clear();
        const auto& items = chooser.File1.items();
        for (std::size_t row = 0; row < items.size(); ++row) {
            if (std::find(names.begin(), names.end(), items[row]) == names.end()) continue;
            chooser.File1.selected_rows.push_back(row);
            chooser.File1.selected = row;
        }
        run(chooser.Command1.click);
    }
    std::vector<std::string> members(const std::string& name) const {
        const Result<zip::Archive> archive = zip::Archive::open(directory.path("zip-htx directory/" + name));
        std::vector<std::string> names;
        if (!archive) return names;
        for (const zip::Member& member : archive->members()) names.emplace_back(member.name);
        return names;
    }

    tests::TemporaryDirectory directory;
    shell::swit& w = main_window;
};

TEST_F(CreateWizard, MakesAZipFileOfTheFilesChosen) {
    begin(false);
    cmdg& chooser = go_to_chooser("MYZIP");
    EXPECT_EQ(chooser.mode(), encoder::ChooserMode::collect_files);
    select(chooser, {"a.gif"});
    select(chooser, {"b.png"});
    EXPECT_THAT(w.Label4.text, StartsWith("Step Fou"));
    EXPECT_EQ(w.Label12.text, "2 files");
    run(chooser.Command2.click);
    EXPECT_EQ(w.Label4.text, "Done.   ");
    EXPECT_EQ(w.Command1.caption, "&Finish");
    EXPECT_FALSE(w.Command2.visible);
    EXPECT_THAT(members("MYZIP.zip"), ElementsAre("a.gif", "b.png"));
    EXPECT_TRUE(tests::ends_process([&] { next(); }));
}

TEST_F(CreateWizard, MakesABookOfPagesAndWhatTheyLeadTo) {
    begin(true);
    cmdg& chooser = go_to_chooser("book");
    EXPECT_EQ(chooser.mode(), encoder::ChooserMode::collect_pages);
    EXPECT_FALSE(chooser.Picture1.visible);
    select(chooser, {"index.htm"});
    run(chooser.Command5.click);
    EXPECT_THAT(chooser.List3.items(), ElementsAre("a.gif", "b.png"));
    EXPECT_THAT(chooser.List4.items(), ElementsAre("two.htm", "deep/three.html"));
    run(chooser.Command3.click);
    run(chooser.Command4.click);
    EXPECT_FALSE(chooser.Command3.enabled || chooser.Command4.enabled || chooser.Command5.enabled);
    run(chooser.Command2.click);
    EXPECT_THAT(members("book.htx"),
                ElementsAre("index.htm", "a.gif", "b.png", "two.htm", "deep/three.html", "index.r29"));
    EXPECT_EQ(directory.read("site/index.r29"), "9495\r\n6960\r\n0\r\n0\r\n");
}

TEST_F(CreateWizard, ChecksTheName) {
    const struct {
        bool book;
        std::string typed, complaint, name;
    } cases[] = {
        {false, "", "must create a name for the ZIP file", ""},
        {true, "", "must create a name for the HTX file", ""},
        {true, "book.ZIP", "will not be recognized", "book.ZIP"},
        {false, "taken", "taken.zip already exists", ""},
        {false, "a/b", "can't be called", "a/b"},
        {false, "a.ZIP", "", "a.ZIP"},
        {true, "book.HTX", "", "book.HTX"},
        {true, "book", "", "book.htx"},
    };
    directory.write("zip-htx directory/taken.zip", "x");
    for (const auto& c : cases) {
        begin(c.book);
        next();
        w.Text2.text = c.typed;
        if (!c.complaint.empty()) platform.expect_message(c.complaint);
        next();
        EXPECT_EQ(w.Text2.text, c.name) << c.typed;
        EXPECT_THAT(w.Label4.text, StartsWith(c.complaint.empty() ? "Step Thr" : "Step Two")) << c.typed;
        windows.unload<cmdg>();
        run(w.back.click);
        if (c.complaint.empty()) run(w.back.click);
        run(w.back.click);
    }
}

TEST_F(CreateWizard, AnEmptyListStaysInStepThree) {
    begin(false);
    cmdg& chooser = go_to_chooser("a");
    platform.expect_message("You must select files");
    run(chooser.Command2.click);
    EXPECT_THAT(w.Label4.text, StartsWith("Step Thr"));
    EXPECT_THAT(members("a.zip"), IsEmpty());
}

TEST_F(CreateWizard, GoingBackLosesNothing) {
    begin(false);
    select(go_to_chooser("a"), {"a.gif", "b.png"});
    w.Text3.text = "sesame";
    run(w.back.click);
    EXPECT_THAT(w.Label4.text, StartsWith("Step Two"));
    run(w.back.click);
    EXPECT_THAT(w.Label4.text, StartsWith("Step One"));
    next();
    EXPECT_EQ(w.Text2.text, "a.zip");
    EXPECT_EQ(w.Text3.text, "sesame");
    next();
    EXPECT_THAT(windows.loaded<cmdg>()->List2.items(), ElementsAre("a.gif", "b.png"));
    run(windows.loaded<cmdg>()->Command2.click);
    EXPECT_THAT(members("a.zip"), ElementsAre("a.gif", "b.png"));
}

TEST_F(CreateWizard, APasswordProtectsByAesUnlessOldProgramsAreToReadIt) {
    for (const bool for_old_programs : {false, true}) {
        begin(false);
        const std::string name = for_old_programs ? "old" : "new";
        next();
        w.Text2.text = name;
        w.Text3.text = "sesame";
        w.old_protection.checked = for_old_programs;
        next();
        auto& chooser = *windows.loaded<cmdg>();
        encoder::enter_directory(chooser, directory.path("site"));
        select(chooser, {"a.gif"});
        run(chooser.Command2.click);
        const Result<zip::Archive> made = zip::Archive::open(directory.path("zip-htx directory/" + name + ".zip"));
        ASSERT_TRUE(made.ok());
        EXPECT_EQ(made->members().front().encryption(),
                  for_old_programs ? archive::Encryption::traditional : archive::Encryption::aes256);
    }
}

TEST_F(CreateWizard, FilesOfOneNameAreKeptOrReplacedAsTheUserSays) {
    directory.write("other/a.gif", "other");
    const struct {
        const char* answer;
        std::vector<std::string> members;
    } cases[] = {{"&Keep all of them", {"a.gif", "a (2).gif"}}, {"Keep only the &last", {"a.gif"}}, {"&Cancel", {}}};
    int number = 0;
    for (const auto& c : cases) {
        const std::string name = std::to_string(++number) + ".zip";
        begin(false);
        go_to_chooser(name);
        windows.unload<cmdg>();
        add_to_wizard(context, {directory.path("site/a.gif"), directory.path("other/a.gif")});
        platform.expect_choice("a.gif", c.answer);
        next();
        EXPECT_EQ(members(name), c.members);
    }
}

TEST_F(CreateWizard, KeepsPathsWhereTheUserWantsThem) {
    begin(false);
    go_to_chooser("a");
    windows.unload<cmdg>();
    w.Check1.checked = true;
    platform.expect_message("Unless you are an expert");
    run(w.Check1.click);
    add_to_wizard(context, {directory.path("site")});
    next();
    const std::string below = directory.path("site/").substr(1);
    EXPECT_THAT(members("a.zip"), ElementsAre(below + "a.gif", below + "b.png", below + "deep/three.html",
                                              below + "index.htm", below + "two.htm"));
}

TEST_F(CreateWizard, DirectoriesThatAreDroppedKeepTheirOwnNames) {
    begin(false);
    go_to_chooser("a");
    windows.unload<cmdg>();
    add_to_wizard(context, {directory.path("site/deep"), directory.path("site/a.gif")});
    next();
    EXPECT_THAT(members("a.zip"), ElementsAre("deep/three.html", "a.gif"));
}

TEST_F(CreateWizard, StopAndFailureLeaveNoFile) {
    begin(false);
    go_to_chooser("a");
    windows.unload<cmdg>();
    directory.write("large", std::string(8U << 20U, 'x'));
    add_to_wizard(context, {directory.path("large")});
    platform.on_repaint = [&](controls::Window&) { w.stop_wanted = true; };
    next();
    EXPECT_THAT(w.Label4.text, StartsWith("Step Fou"));
    platform.on_repaint = {};
    std::filesystem::remove(directory.path("large"));
    platform.expect_message("could not be made");
    next();
    EXPECT_THAT(members("a.zip"), IsEmpty());
    add_to_wizard(context, {directory.path("site/a.gif")});
    platform.expect_message("could not be read");
    next();
    EXPECT_THAT(members("a.zip"), ElementsAre("a.gif"));
}

TEST_F(CreateWizard, ABookKeepsAFileThatIsNoWindowSize) {
    directory.write("site/index.r29", "my own notes");
    begin(true);
    cmdg& chooser = go_to_chooser("book");
    select(chooser, {"two.htm"});
    run(chooser.Command2.click);
    EXPECT_THAT(members("book.htx"), ElementsAre("two.htm", "index.r29"));
    EXPECT_EQ(directory.read("site/index.r29"), "my own notes");
}

/// The links that `timmy` lists for a page of one line.
class Spider : public CreateWizard {
  protected:
    cmdg& scan(const std::string& page) {
        directory.write("site/page.htm", page);
        cmdg& chooser = show_chooser(context, encoder::ChooserMode::collect_pages, directory.path("site"));
        chooser.List3.clear();
        chooser.List4.clear();
        timmy(chooser, directory.path("site/page.htm"));
        return chooser;
    }
};

TEST_F(Spider, ListsLinksThatAreFiles) {
    directory.write("site/c.jpeg", "x");
    directory.write("site/sp ace.bmp", "x");
    directory.write("up.gif", "x");
    const struct {
        std::string page;
        std::vector<std::string> images, pages;
    } cases[] = {
        {"<a HREF=\"two.htm\"><a href=\"two.htm\">", {}, {"two.htm"}},
        {"<img src=\"c.jpeg\"><body background=\"a.gif\">", {"c.jpeg", "a.gif"}, {}},
        {"<a href=\"page.htm\">", {}, {"page.htm"}},
        {"<a href=\"http://x/two.htm\"><a href=\"gone.htm\">", {}, {}},
        {"<img src=\"../up.gif\"><a href=\"deep/three.html\">", {"../up.gif"}, {"deep/three.html"}},
        {"href=\"two.htm\"", {}, {}},
        {"x\ry\r", {}, {}},
        // Links found only in the tags come after those found in the lines.
        {"<img src='a.gif'><img\nsrc=\"c.jpeg\"><img src=\"sp%20ace.bmp\"><img src=\"./b.png\"><a href=\"./two.htm#x\">"
         "<a href=\"index.htm\">",
         {"a.gif", "c.jpeg", "sp ace.bmp", "b.png"},
         {"index.htm", "two.htm"}},
        {"<a href=\"./two.htm\">", {}, {"./two.htm"}},
    };
    for (const auto& c : cases) {
        cmdg& chooser = scan(c.page);
        EXPECT_EQ(chooser.List3.items(), c.images) << c.page;
        EXPECT_EQ(chooser.List4.items(), c.pages) << c.page;
    }
}

}  // namespace
}  // namespace quill::htx
