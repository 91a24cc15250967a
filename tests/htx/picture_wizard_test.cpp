#include "htx/picture_wizard/picture_wizard.h"

#include "archive/container/archive.h"
#include "archive/container/member_reader.h"
#include "htx/html/page_text.h"
#include "pics/album.h"
#include "shell/main_workflow.h"
#include "support/program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::htx {
namespace {

using controls::run;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PictureWizard : public testing::Test, protected tests::Program {
  protected:
    PictureWizard() {
        session.AppParentDir = directory.path();
        session.AppDir = directory.path("program");
        directory.make_directory("zip-htx directory");
        for (const char* name : {"one/a.jpg", "one/b.gif", "one/c.txt", "two/a.jpg"}) directory.write(name, name);
        provide_picture_wizard(context);
    }

    HtxWiz& wizard() { return *windows.loaded<HtxWiz>(); }
    /// Moves to the first step of a wizard with pictures in `one`.
    HtxWiz& begin(bool album, const std::vector<std::string>& pictures = {}) {
        (album ? routes.make_pics_file : routes.make_picture_book)(pictures);
        HtxWiz& w = wizard();
        run(w.Command1.click);
        w.Dir1.path = directory.path("one");
        run(w.Dir1.change);
        return w;
    }
    /// Moves to the titles with a.jpg and b.gif.
    HtxWiz& go_to_titles() {
        HtxWiz& w = begin(false);
        run(w.add_all.click);
        run(w.Command4.click);
        run(w.Command4.click);
        return w;
    }
    static void type(HtxWiz& w, const std::string& title, const std::string& caption, bool above) {
        w.Text2.text = title;
        run(w.Text2.change);
        w.Text3.text = caption;
        w.Option1(0).chosen = above;
        w.Option1(1).chosen = !above;
    }
    HtxWiz& go_to_saving() {
        HtxWiz& w = go_to_titles();
        type(w, "First", "Seen from above", true);
        run(w.next_picture.click);
        type(w, "Second", "", false);
        run(w.Command4.click);
        run(w.Command4.click);
        return w;
    }
    static void name(HtxWiz& w, const std::string& text) {
        w.Text5.text = text;
        run(w.Text5.change);
    }
    std::string made(const std::string& name) const { return directory.path("zip-htx directory/" + name); }
    static std::vector<std::string> members(const std::string& path) {
        const Result<zip::Archive> archive = zip::Archive::open(path);
        std::vector<std::string> names;
        if (!archive) return {"no archive"};
        for (const zip::Member& member : archive->members()) names.emplace_back(member.name);
        return names;
    }
    static std::string member(const std::string& path, const std::string& name, const std::string& password = {}) {
        const Result<zip::Archive> archive = zip::Archive::open(path);
        std::string bytes;
        if (!archive) return "no archive";
        zip::MemberReader reader(*archive, password);
        for (const zip::Member& each : archive->members()) {
            if (each.name != name) continue;
            reader.read(each, [&](std::string_view piece) {
                bytes += piece;
                return true;
            });
        }
        return bytes;
    }

    tests::TemporaryDirectory directory;
};

TEST_F(PictureWizard, GoesThroughTheStepsOfABook) {
    HtxWiz& w = begin(false);
    EXPECT_EQ(w.caption, "HTX  Picture Book / Photo Album Maker");
    EXPECT_EQ(w.Label4.text, "Step One - Selecting the pictures");
    EXPECT_THAT(w.File1.items(), ElementsAre("a.jpg", "b.gif"));
    EXPECT_FALSE(w.Command4.enabled);
    EXPECT_FALSE(w.Command7.visible);
    run(w.add_all.click);
    run(w.Command4.click);
    EXPECT_EQ(w.Label4.text, "Step Two - Letter sizes and colors");
    run(w.Command4.click);
    EXPECT_EQ(w.Label4.text, "Step Three - Adding Titles and Captions");
    EXPECT_EQ(w.Label6.text, "Picture 1 of 2");
    EXPECT_FALSE(w.Command4.enabled);
    run(w.next_picture.click);
    EXPECT_EQ(w.Label6.text, "Picture 2 of 2");
    EXPECT_EQ(w.shown_picture, directory.path("one/b.gif"));
    EXPECT_FALSE(w.next_picture.enabled);
    run(w.Command4.click);
    EXPECT_EQ(w.Label4.text, "Step Four - Setting the picture page order");
    run(w.Command4.click);
    EXPECT_EQ(w.Label4.text, "Step Five - Creating the HTX / HTML files");
    EXPECT_EQ(w.Command4.caption, "Finish");
    EXPECT_FALSE(w.Command4.enabled);
    run(w.Command7.click);
    EXPECT_EQ(w.Command4.caption, "Next  >");
    run(w.Command7.click);
    EXPECT_EQ(w.Label6.text, "Picture 1 of 2");
    EXPECT_THAT(w.List6.items(), IsEmpty());
    run(w.Command7.click);
    run(w.Command7.click);
    EXPECT_EQ(w.Label4.text, "Step One - Selecting the pictures");
    run(w.Command5.click);
    EXPECT_EQ(windows.loaded<HtxWiz>(), nullptr);
}

TEST_F(PictureWizard, MakesTheBook) {
    HtxWiz& w = go_to_saving();
    name(w, "album");
    platform.expect_message("Done.");
    run(w.Command4.click);
    EXPECT_EQ(windows.loaded<HtxWiz>(), nullptr);
    EXPECT_THAT(members(made("album.htx")), ElementsAre("a.jpg", "b.gif", "0001.htm", "0002.htm", "index.r29"));
    EXPECT_EQ(member(made("album.htx"), "0001.htm"),
              "<html><head><title>\r\nFirst\r\n</title></head>\r\n<body>&nbsp;<br>&nbsp;\r\n"
              "<center><table COLS=1 WIDTH=\"80%\" >\r\n<tr><td><center>\r\nSeen from above</center><BR><p></td></tr>"
              "\r\n<tr><td><center><img SRC=\r\n\"a.jpg\"\r\nBORDER=0></center></td></tr>\r\n"
              "<tr><td><p><BR><p><center>\r\n</center></td></tr></table></center>\r\n"
              "<br>&nbsp;<br>&nbsp;</body></html>\r\n");
    EXPECT_EQ(member(made("album.htx"), "index.r29"), "28800\r\n15600\r\n0\r\n0\r\n");
    EXPECT_EQ(session.SelectedFile, "album.htx");
    EXPECT_EQ(directory.read("one/a.jpg"), "one/a.jpg");
    EXPECT_THAT(members(made("album.htx")).size(), 5U);
}

TEST_F(PictureWizard, PagesFollowTheNewOrder) {
    HtxWiz& w = go_to_titles();
    type(w, "A", "of a", true);
    run(w.next_picture.click);
    type(w, "B", "of b", true);
    run(w.Command4.click);
    run(w.clear_order.click);
    w.put_in_order({1});
    platform.expect_message("You have not added enough files");
    run(w.Command4.click);
    w.put_in_order({1, 0});
    EXPECT_THAT(w.List4.items(), ElementsAre("b.gif", "a.jpg"));
    EXPECT_THAT(w.List5.items(), ElementsAre("1", "0"));
    w.move_in_order(0, 1);
    w.move_in_order(1, 0);
    run(w.Command4.click);
    name(w, "book.HTX");
    w.Text4.text = "secret";
    platform.expect_message("Done.");
    run(w.Command4.click);
    const std::string page = member(made("book.HTX"), "0001.htm", "secret");
    EXPECT_THAT(page, HasSubstr("\r\nB\r\n"));
    EXPECT_THAT(page, HasSubstr("of b"));
    EXPECT_THAT(page, HasSubstr("\"b.gif\""));
    EXPECT_EQ(member(made("book.HTX"), "0001.htm", "wrong"), "");
}

TEST_F(PictureWizard, KeepsEqualNamesApart) {
    HtxWiz& w = begin(false, {directory.path("one/a.jpg"), directory.path("two/a.jpg")});
    w.add_files({directory.path("one/a.jpg")});  // once is enough
    EXPECT_THAT(w.List2.items(), ElementsAre("a.jpg", "a (2).jpg"));
    run(w.Command4.click);
    run(w.Command4.click);
    run(w.next_picture.click);
    run(w.Command4.click);
    EXPECT_THAT(w.List4.items(), ElementsAre("a.jpg", "a (2).jpg"));
    run(w.Command4.click);
    w.index_page.checked = true;
    name(w, "x");
    platform.expect_message("Done.");
    run(w.Command4.click);
    EXPECT_EQ(member(made("x.htx"), "a (2).jpg"), "two/a.jpg");
    EXPECT_THAT(member(made("x.htx"), "0000.htm"), HasSubstr("a (2).jpg"));
}

TEST_F(PictureWizard, ProposesTitlesAndOffersTypedOnesAgain) {
    HtxWiz& w = go_to_titles();
    EXPECT_EQ(w.Text2.text, "a");
    type(w, "  ", "", true);
    platform.expect_message("You must type a Title");
    run(w.next_picture.click);
    type(w, "Mine", "words", false);
    run(w.next_picture.click);
    EXPECT_EQ(w.Text2.text, "b");
    EXPECT_TRUE(w.Command4.enabled);
    run(w.Command7.click);
    run(w.Command4.click);
    EXPECT_EQ(w.Text2.text, "Mine");
    EXPECT_EQ(w.Text3.text, "words");
    EXPECT_TRUE(w.Option1(1).chosen);
}

TEST_F(PictureWizard, LettersGoUpAndDownTheLadder) {
    HtxWiz& w = begin(false, {directory.path("one/a.jpg")});
    run(w.Command4.click);
    for (const char* size : {"14", "18", "24", "36", "36"}) {
        run(w.larger.click);
        EXPECT_EQ(w.Label12.text, size);
    }
    EXPECT_FALSE(w.larger.enabled);
    for (int i = 0; i < 6; ++i) run(w.smaller.click);
    EXPECT_EQ(w.Label12.text, "8");
    EXPECT_FALSE(w.smaller.enabled);
    run(w.bold.click);
    EXPECT_EQ(w.bold.caption, "Make the letters not bold");
    platform.expect_colour(std::nullopt);
    run(w.background.click);
    EXPECT_FALSE(w.style.has_colours);
    platform.expect_colour(controls::Colour{1, 2, 3});
    run(w.foreground.click);
    EXPECT_EQ(w.style.foreground, (controls::Colour{1, 2, 3}));
    run(w.reset_letters.click);
    EXPECT_EQ(w.style, PageStyle{.has_colours = true});
}

TEST_F(PictureWizard, ReplacesNoFile) {
    HtxWiz& w = go_to_saving();
    directory.write("zip-htx directory/there.htx", "a book of before");
    name(w, "there");
    platform.expect_message("already exists in this directory");
    run(w.Command4.click);
    EXPECT_EQ(w.Text5.text, "");
    EXPECT_FALSE(w.Command4.enabled);
    name(w, "a/b");
    platform.expect_message("can't be called");
    run(w.Command4.click);
    EXPECT_EQ(directory.read("zip-htx directory/there.htx"), "a book of before");
}

TEST_F(PictureWizard, ExtraFilesReplaceNothing) {
    const struct {
        std::string where, answer, pages_in;
    } cases[] = {{"zip-htx directory", "", "zip-htx directory"},
                 {"one", "", "one"},
                 {"two", "&Make a new directory for them", "two/x pages"},
                 {"two", "Make &only the book", ""}};
    for (const auto& c : cases) {
        HtxWiz& w = go_to_saving();
        w.Dir1.path = directory.path(c.where);
        run(w.Dir1.change);
        w.Option2(0).chosen = false;
        w.Option2(1).chosen = true;
        const std::string book = c.pages_in.empty() ? "y" : "x";
        name(w, book);
        if (!c.answer.empty()) platform.expect_choice("already a file called a.jpg", c.answer);
        platform.expect_message("Done.");
        run(w.Command4.click);
        windows.collect();
        EXPECT_EQ(members(directory.path(c.where + "/" + book + ".htx")).size(), 5U) << c.where;
        if (!c.pages_in.empty()) {
            EXPECT_EQ(directory.read(c.pages_in + "/a.jpg"), "one/a.jpg");
            EXPECT_THAT(directory.read(c.pages_in + "/0002.htm"), HasSubstr("Second"));
        }
    }
    EXPECT_EQ(directory.read("two/a.jpg"), "two/a.jpg");
    EXPECT_EQ(directory.read("one/a.jpg"), "one/a.jpg");
}

TEST_F(PictureWizard, MakesAnAlbumInTheNewOrder) {
    HtxWiz& w = begin(true);
    EXPECT_EQ(w.Label1.text, "Welcome to the PICS multiple picture file maker");
    run(w.add_all.click);
    run(w.Command4.click);
    EXPECT_EQ(w.Label4.text, "Step Two - Setting the pictures order");
    EXPECT_TRUE(w.Check1.visible);
    EXPECT_FALSE(w.Command7.visible);
    run(w.clear_order.click);
    w.put_in_order({1, 0});
    run(w.Command4.click);
    EXPECT_EQ(w.Label4.text, "Step Three - Creating the PICS file");
    EXPECT_EQ(w.Label11.text, "Name for the PICS file:");
    EXPECT_FALSE(w.Option2(0).visible || w.Text4.visible || w.Text6.visible);
    name(w, "mine");
    platform.expect_message("Done.");
    run(w.Command4.click);
    const Result<pics::Album> album = pics::Album::open(made("mine.pics"));
    ASSERT_TRUE(album);
    ASSERT_EQ(album->entries().size(), 2U);
    EXPECT_EQ(album->entries()[0].name, "b.gif");
    EXPECT_EQ(album->form(), pics::Form::plain);
}

TEST_F(PictureWizard, AlbumsGetThumbnailsOfDecodedPictures) {
    HtxWiz& w = begin(true);
    run(w.add_all.click);
    run(w.Command4.click);
    w.Check1.checked = true;
    run(w.Command4.click);
    platform.fake_pictures.set(directory.path("one/a.jpg"), tests::plain_picture(200, 100, 0xFF0000FF));
    name(w, "stopped");
    platform.expect_message("make thumbnails");
    run(w.Command4.click);
    run(w.stop.click);
    EXPECT_TRUE(platform.fake_pictures.waiting.empty());
    EXPECT_TRUE(w.Command4.enabled);
    name(w, "mine.PICS");
    platform.expect_message("make thumbnails");
    run(w.Command4.click);
    EXPECT_FALSE(w.Command4.enabled);
    platform.expect_message("one/b.gif");
    platform.expect_message("Done.");
    platform.fake_pictures.answer_all();
    EXPECT_EQ(windows.loaded<HtxWiz>(), nullptr);
    const Result<pics::Album> album = pics::Album::open(made("mine.PICS"));
    ASSERT_TRUE(album);
    ASSERT_EQ(album->form(), pics::Form::with_thumbnails);
    const std::string_view blue = album->file().bytes().substr(*album->entries()[0].thumbnail_at, pics::thumbnail_size);
    const std::string_view blank =
        album->file().bytes().substr(*album->entries()[1].thumbnail_at, pics::thumbnail_size);
    EXPECT_EQ(blue.substr(54, 3), "\xFF\xFF\xFF");  // the lowest row: below a picture 50 pixels high
    EXPECT_EQ(blue.substr(54 + 244 * 60, 3), (std::string_view("\xFF\0\0", 3)));
    EXPECT_EQ(blank.substr(54 + 244 * 60, 3), "\xFF\xFF\xFF");
    EXPECT_EQ(album->entries()[1].size, 9U);
}

TEST_F(PictureWizard, LeavesOutPicturesThatAreGone) {
    HtxWiz& w = begin(true, {directory.path("one/a.jpg"), directory.path("gone.gif")});
    run(w.Command4.click);
    run(w.Command4.click);
    name(w, "mine");
    platform.expect_message("gone.gif");
    platform.expect_message("Done.");
    run(w.Command4.click);
    EXPECT_EQ(pics::Album::open(made("mine.pics"))->entries().size(), 1U);
}

}  // namespace
}  // namespace quill::htx
