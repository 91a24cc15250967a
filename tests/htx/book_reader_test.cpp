#include "htx/book_reader.h"

#include "files/directory.h"
#include "files/path.h"
#include "htx/open_book.h"
#include "support/fake_browser.h"
#include "zip/archive_window_fixture.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

namespace quill::htx {
namespace {

using controls::run;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::ArchiveBuilder;

std::string book() {
    return ArchiveBuilder()
        .add("c.htm", "<title>Third</title>needle")
        .add("A.HTML", "<TITLE>First</TITLE><p>one</p><p>a Needle here, a needle</p><p>needles</p>")
        .add("b/b.htm", "<title>\r\nSecond\r\n")
        .add("pic.gif", "GIF")
        .add("index.r29", "9000\r\n6000\r\n300\r\n26000\r\n")
        .finish();
}

/// The reader on a book opened from the main window.
class BookReader : public testing::Test {
  protected:
    BookReader() { setenv("XDG_STATE_HOME", state.path().c_str(), 1); }

    void open(const std::string& archive) {
        program = std::make_unique<tests::WindowProgram>(archive, "a.htx");
        provide_reader(program->context, program->archives);
        shell::openarchive(program->context);
        w = program->windows.loaded<Form7>();
        ASSERT_NE(w, nullptr);
        w->attach(&browser);
    }
    std::string last() const { return browser.asked.empty() ? std::string() : browser.asked.back(); }

    tests::TemporaryDirectory state;
    tests::FakeBrowser browser;
    std::unique_ptr<tests::WindowProgram> program;
    Form7* w = nullptr;
};

TEST_F(BookReader, OpensAtTheFirstPageInTheBooksWindow) {
    open(book());
    EXPECT_TRUE(w->visible);
    EXPECT_FALSE(program->main_window.visible);
    EXPECT_EQ(last(), "A.HTML");
    EXPECT_EQ(w->Label2.text, "Page 1 of 3");
    EXPECT_EQ(w->List1.count(), 5U);
    EXPECT_EQ(w->width, 9000);
    EXPECT_EQ(w->top, 300);
    EXPECT_EQ(w->left, program->platform.width_of_screen - 9000);
    EXPECT_EQ(program->session.BookWidth, 9000);
}

TEST_F(BookReader, TurnsPagesAndFollowsTheBrowser) {
    open(book());
    const auto turn = [&](const controls::Action& action) {
        browser.asked.clear();
        run(action);
        if (!browser.asked.empty()) w->navigated(last());
        return w->Label2.text;
    };
    EXPECT_EQ(turn(w->Command3(2).click), "Page 1 of 3");
    EXPECT_THAT(browser.asked, IsEmpty());
    EXPECT_EQ(turn(w->Command3(3).click), "Page 2 of 3");
    EXPECT_EQ(turn(w->lst.click), "Page 3 of 3");
    EXPECT_EQ(turn(w->nxt.click), "Page 3 of 3");
    EXPECT_EQ(turn(w->prv.click), "Page 2 of 3");
    EXPECT_EQ(last(), "b/b.htm");
    EXPECT_EQ(turn(w->fst.click), "Page 1 of 3");
    w->navigated("no page");
    EXPECT_EQ(w->Label2.text, "Page 1 of 3");
    w->titled("A title");
    EXPECT_EQ(w->caption, "A title");
}

TEST_F(BookReader, GoesOnWhereTheBookWasLeft) {
    open(book());
    const std::string path = program->dir.path("a.htx");
    run(w->larger.click);
    EXPECT_EQ(browser.zoom, 110);
    run(w->lst.click);
    w->navigated(last());
    const std::string memory = state.path("quillbright/books");
    EXPECT_EQ(remembered_place(memory, path), (BookPlace{2, 0, 110})) << "before the book is closed";
    browser.top = 7;
    run(w->close);
    EXPECT_EQ(remembered_place(memory, path), (BookPlace{2, 7, 110}));

    browser = {};
    auto& again = program->windows.load<Form7>(program->context);
    again.remember_in(memory, path);
    again.show_files({{"a.htm", "a"}, {"b.htm", "b"}, {"c.htm", "c"}});
    again.attach(&browser);
    EXPECT_EQ(last(), "c.htm");
    again.navigated("c.htm");
    EXPECT_EQ(browser.top, 7U);
    EXPECT_EQ(browser.zoom, 110);
    run(again.usual.click);
    again.zoom_by(-100);
    EXPECT_EQ(browser.zoom, least_zoom);
    EXPECT_FALSE(again.smaller.enabled);
    again.attach(nullptr);
}

TEST_F(BookReader, BeginsAtTheFirstPageWhereTheRememberedOneIsGone) {
    open(book());
    const std::string memory = state.path("memory");
    remember_place(memory, "x", {2, 7, 150});
    program->windows.unload<Form7>();
    auto& again = program->windows.load<Form7>(program->context);
    again.remember_in(memory, "x");
    again.show_files({{"a.htm", "a"}});
    again.attach(&browser);
    again.navigated("a.htm");
    EXPECT_EQ(last(), "a.htm");
    EXPECT_EQ(browser.top, 0U);
    EXPECT_EQ(again.Label2.text, "Page 1 of 1");
    again.attach(nullptr);
}

TEST_F(BookReader, ListsTheContents) {
    open(book());
    run(w->Command4.click);
    EXPECT_TRUE(w->Frame2.visible && w->List3.visible);
    EXPECT_THAT(w->List3.items(), ElementsAre("  First", "  Second", "  Third"));
    EXPECT_THAT(w->List4.items(), ElementsAre("A.HTML", "b.htm", "c.htm"));
    w->List3.selected = 2;
    run(w->List3.change);
    EXPECT_EQ(last(), "c.htm");
    EXPECT_FALSE(w->Frame2.visible);
}

TEST_F(BookReader, FindsInAllPages) {
    open(book());
    program->platform.expect_input("Find in all pages", "needle");
    run(w->fnb.click);
    EXPECT_THAT(w->hits.items(), ElementsAre("Page 1: a Needle here, a needle", "Page 1: needles", "Page 3: needle"));
    EXPECT_EQ(last(), "find needle 0");
    browser.asked.clear();
    run(w->again.click);
    run(w->again.click);
    EXPECT_THAT(browser.asked, ElementsAre("find needle 2", "c.htm", "find needle 0"));
    w->navigated("c.htm");
    browser.asked.clear();
    run(w->earlier.click);
    EXPECT_THAT(browser.asked, ElementsAre("A.HTML", "find needle 2"));
    w->navigated("A.HTML");
    program->platform.expect_input("Find in all pages", "nowhere");
    program->platform.expect_message("on no page");
    run(w->fnb.click);
}

TEST_F(BookReader, FindsOnThePageBothWays) {
    open(book());
    program->platform.expect_input("Find on this page", "needle");
    run(w->fnd.click);
    run(w->again.click);
    run(w->earlier.click);
    EXPECT_THAT(browser.asked, ElementsAre("A.HTML", "find needle", "find needle", "find back needle"));
    browser.has_text = false;
    program->platform.expect_message("further up");
    run(w->earlier.click);
}

TEST_F(BookReader, LinksInTheArchiveLeadNowhere) {
    tests::TemporaryDirectory outside;
    const std::string secret = outside.write("secret.htm", "secret");
    const tests::Odd link{.made_by = 0x0314, .attributes = 0120777U << 16U};
    open(ArchiveBuilder()
             .add("a.htm", secret, link)
             .add("b.png", secret, link)
             .add("d", outside.path(), link)
             .add("d/secret.htm", "of the book")
             .add("z.htm", "<img src=b.png>")
             .finish());
    EXPECT_EQ(w->Label2.text, "Page 1 of 3");
    for (const std::string& path : w->List1.items()) {
        EXPECT_FALSE(files::is_link(path)) << path;
        EXPECT_NE(*files::read_file(path), "secret") << path;
    }
    run(w->close);
    EXPECT_EQ(outside.read("secret.htm"), "secret");
}

TEST_F(BookReader, FollowsLinksOnlyWithinTheBookOrAfterAQuestion) {
    open(book());
    w->follow("A.HTML", "b/b.htm#part");
    EXPECT_EQ(last(), "b/b.htm#part");
    w->follow("b/b.htm", "../c.htm");
    EXPECT_EQ(last(), "c.htm");
    browser.asked.clear();
    for (const char* address : {"gone.htm", "file:///etc/passwd", "../../etc/passwd", "javascript:alert(1)",
                                "data:text/html,x", "//host/x", "vbscript:x", "C:\\x"}) {
        program->platform.expect_message(address);
        w->follow("A.HTML", address);
    }
    program->platform.expect_question("http://example.org/", false);
    w->follow("A.HTML", "http://example.org/");
    EXPECT_THAT(program->platform.started, IsEmpty());
    program->platform.expect_question("http://example.org/", true);
    w->follow("A.HTML", "http://example.org/");
    ASSERT_EQ(program->platform.started.size(), 1U);
    EXPECT_THAT(program->platform.started[0].arguments, ElementsAre("http://example.org/"));
    EXPECT_THAT(browser.asked, IsEmpty());
}

TEST_F(BookReader, ClosingDeletesTheFilesOfTheBookAlone) {
    open(book());
    program->dir.write("temp/mine.txt", "mine");
    const std::string work = program->session.WorkDir;
    EXPECT_TRUE(files::exists(files::join(work, "A.HTML")));
    run(w->close);
    EXPECT_FALSE(files::exists(files::join(work, "A.HTML")));
    EXPECT_EQ(program->dir.read("temp/mine.txt"), "mine");
    EXPECT_EQ(program->windows.loaded<Form7>(), nullptr);
    EXPECT_EQ(program->window(), nullptr);
    EXPECT_TRUE(program->main_window.visible);
    EXPECT_EQ(program->main_window.apt(1).text, "Select/Open/View a file");
}

TEST_F(BookReader, ABookWithoutPagesOrSizeOpensAllTheSame) {
    open(ArchiveBuilder().add("a.gif", "x").finish());
    EXPECT_EQ(w->Label2.text, "Page 1 of 0");
    EXPECT_THAT(browser.asked, IsEmpty());
    EXPECT_EQ(w->width, 9495);
    for (int i = 1; i <= 4; ++i) run(w->Command3(i).click);
    run(w->Command4.click);
    EXPECT_THAT(browser.asked, IsEmpty());
}

TEST_F(BookReader, LetsTheUserSizeTheWindowOfANewBook) {
    tests::Program fresh;
    tests::TemporaryDirectory directory;
    size_book_window(fresh.context, directory.write("a.htm", "x"));
    auto* sizing = fresh.windows.loaded<Form7>();
    ASSERT_NE(sizing, nullptr);
    EXPECT_TRUE(sizing->Command1.visible && sizing->Command2.visible);
    EXPECT_FALSE(sizing->Command4.visible);
    sizing->width = 12000;
    sizing->resized();
    run(sizing->Command2.click);
    EXPECT_EQ(fresh.session.BookWidth, 12000);
    EXPECT_TRUE(directory.has("a.htm"));
}

}  // namespace
}  // namespace quill::htx
