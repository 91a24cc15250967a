#include "viewer/copy_job.h"
#include "viewer/favorites_list.h"
#include "viewer/list_manager.h"
#include "viewer/open_album.h"
#include "viewer/viewer_fixture.h"

#include <filesystem>

namespace quill::viewer {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Favorites : public ViewerTest {
  protected:
    void write_list(const std::string& bytes) { dir_.write("program/default.fpl", bytes); }
    std::string list() { return dir_.has("program/default.fpl") ? dir_.read("program/default.fpl") : std::string(); }
};

TEST_F(Favorites, APictureIsAddedOnce) {
    frmPic& w = open(picture("photos/a.png"));
    run(w.addcur.click);
    EXPECT_EQ(list(), photos_ + "/a.png\r\n");
    write_list(photos_ + "/A.PNG");
    program_.platform.expect_message(photos_ + "/a.png is already on the Favorite Pictures list.");
    run(w.ipm(1).click);
    EXPECT_EQ(list(), photos_ + "/A.PNG");
    picture("photos/A.PNG");  // on this system a different picture
    run(w.addcur.click);
    EXPECT_EQ(list(), photos_ + "/A.PNG\r\n" + photos_ + "/a.png\r\n");
    w.addcur.enabled = false;
    run(w.ipm(1).click);
    EXPECT_EQ(open_windows(), 1U);
}

TEST_F(Favorites, RemovalTakesTheEntryAndKeepsEveryOtherByte) {
    const std::string a = picture("photos/a.png"), comma = picture("photos/one, two.png");
    const struct {
        const char* name;
        std::string before, after;
    } cases[] = {
        {"twice", a + "\r\n/x.png\r\n" + a + "\r\n", "/x.png\r\n"},
        {"comments and what makes no sense", "# mine\r\n\r\n \"open\r\n" + a + "\r\n\x01\r\n",
         "# mine\r\n\r\n \"open\r\n\x01\r\n"},
        {"a path with a comma", comma + "\r\n" + a + "\r\n", comma + "\r\n"},
        {"lines of Unix", "/x.png\n" + a + "\n/y.png", "/x.png\n/y.png"},
        {"other capitals of a file that is gone", "/x.png\r\n" + photos_ + "/A.png\r\n", "/x.png\r\n"},
        {"one of two fields", "/x.png, " + a + "\r\n", "/x.png\r\n"},
        {"relative", "../photos/a.png\r\n", "../photos/a.png\r\n"},
        {"not on it", "/x.png", "/x.png"},
    };
    for (const auto& c : cases) {
        write_list(c.before);
        EXPECT_TRUE(remove_favorite(session.FavListPath, a)) << c.name;
        EXPECT_EQ(list(), c.after) << c.name;
    }
    write_list(comma + "\r\n" + a + "\r\n");
    EXPECT_TRUE(remove_favorite(session.FavListPath, comma));
    EXPECT_EQ(list(), a + "\r\n");
}

TEST_F(Favorites, MoreThanTwoThousandEntriesAreKept) {
    std::string bytes;
    for (int i = 0; i < 5000; ++i) bytes += "/pictures/" + std::to_string(i) + ".png\r\n";
    write_list(bytes);
    EXPECT_TRUE(remove_favorite(session.FavListPath, "/pictures/4000.png"));
    EXPECT_THAT(favorite_pictures(session.FavListPath), SizeIs(4999));
    const auto again = add_favorite(session.FavListPath, "/pictures/3000.PNG");
    ASSERT_TRUE(again);
    EXPECT_EQ(*again, Added::was_there);
}

TEST_F(Favorites, PathsAreReadAsPeopleWriteThem) {
    const std::string a = picture("photos/a.png"), comma = picture("photos/one, two.png");
    const std::string beside = picture("program/b.png");
    write_list(a + "\r\n" + comma + "\r\nb.png\r\n# no picture\r\n\r\n/gone.png\r\n\"" + a + "\"\r\n" + a + "," +
               beside);
    EXPECT_THAT(favorite_pictures(session.FavListPath), ElementsAre(a, comma, beside, "/gone.png", a, a, beside));
    ASSERT_TRUE(add_favorite(dir_.path("program/other.fpl"), beside));
    EXPECT_EQ(dir_.read("program/other.fpl"), "b.png\r\n");
    tittwo& w = show_column(program_.context);
    choose_tab(w, 1);
    EXPECT_THAT(w.List1.items(), ElementsAre(a, comma, beside, a, a, beside));
}

TEST_F(Favorites, AListThatCannotBeWrittenIsSaidAndStays) {
    session.FavListPath = dir_.path("gone/default.fpl");
    frmPic& w = open(picture("photos/a.png"));
    program_.platform.expect_message("could not be put on the list");
    run(w.addcur.click);
}

TEST_F(Favorites, APictureOfAnAlbumIsCopiedToALastingPlaceFirst) {
    session.PicsMode = 1;
    files::change_directory(dir_.path("program/temp"));
    for (const bool agreed : {false, true}) {
        frmPic& w = open(picture("program/temp/x.gif"));
        w.caption = "x.gif";
        program_.platform.expect_question("favorite pictures", agreed);
        run(w.addcur.click);
        EXPECT_EQ(list(), agreed ? dir_.path("favorite pictures/x.gif") + "\r\n" : "");
        run(w.addcur.click);  // asked once
        if (!agreed) {
            close_frame(program_.context);
            session.PicsMode = 1;
        }
    }
    EXPECT_EQ(dir_.read("favorite pictures/x (2).gif"), "pixels");
    EXPECT_EQ(list(),
              dir_.path("favorite pictures/x.gif") + "\r\n" + dir_.path("favorite pictures/x (2).gif") + "\r\n");
}

TEST_F(Favorites, TheMenusLeadToTheirWindows) {
    frmPic& w = open(picture("photos/a.png"));
    write_list("/photos/a.png\r\n");
    std::vector<std::string> made;
    program_.routes.make_picture_book = [&](const auto& pictures) { made = pictures; };
    program_.routes.make_pics_file = [&](const auto& pictures) { made.push_back(pictures.at(0)); };
    run(w.favmen(3).click);
    run(w.favmen(5).click);
    EXPECT_THAT(made, ElementsAre("/photos/a.png", "/photos/a.png"));
    run(w.favmen(4).click);
    EXPECT_EQ(program_.windows.loaded<SavPic>()->caption, "Copy files on favorites list to a directory");
    run(w.favmen(1).click);
    EXPECT_TRUE(program_.windows.loaded<SavPic>()->Frame2.visible);
    for (int i = 0; i < 4; ++i) program_.platform.expect_message("");
    run(w.favmen(7).click);
    run(program_.windows.loaded<tittwo>()->Label1(1).right_press);
    EXPECT_NE(program_.windows.loaded<tittwo>(), nullptr);
    run(program_.windows.loaded<tittwo>()->fvmn(1).click);
    EXPECT_EQ(program_.windows.loaded<tittwo>(), nullptr);
    EXPECT_TRUE(program_.windows.loaded<SavPic>()->Frame2.visible);
}

class ListManager : public Favorites {
  protected:
    SavPic& manager() { return show_list_manager(program_.context); }
    static void select(SavPic& w, std::size_t row) {
        w.List1.selected = row;
        run(w.List1.change);
    }
};

TEST_F(ListManager, CountsAListAndMakesItTheCurrentOne) {
    const std::string a = picture("photos/a.png");
    dir_.write("program/none.fpl", "");
    dir_.write("program/one.fpl", a + "\r\n");
    dir_.write("program/two.fpl", a + "\r\n/gone.png\r\n");
    SavPic& w = manager();
    EXPECT_EQ(w.caption, "Favorite Picture Lists");
    EXPECT_THAT(w.List1.items(), ElementsAre("none", "one", "two"));
    const char* texts[] = {"No pictures on the list", "1 picture on the list", "2 pictures on the list"};
    for (std::size_t i = 0; i < 3; ++i) {
        select(w, i);
        EXPECT_EQ(w.Label4.text, texts[i]);
    }
    run(w.Command9.click);
    EXPECT_EQ(session.FavListPath, dir_.path("program/two.fpl"));
    SavPic& again = manager();
    again.List1.selected = 1;
    run(again.List1.double_click);
    const tittwo& column = *program_.windows.loaded<tittwo>();
    EXPECT_TRUE(shows_favorites(column) && column.howf(1).checked && !column.howf(0).checked);
    EXPECT_THAT(column.List1.items(), ElementsAre(a));
    EXPECT_EQ(program_.windows.loaded<SavPic>(), nullptr);
}

TEST_F(ListManager, CreatesAndDeletesLists) {
    dir_.write("program/mine.fpl", "kept");
    SavPic& w = manager();
    const struct {
        const char* typed;
        const char* file;  // nullptr: refused
    } names[] = {{"", ""}, {"mine", "mine.fpl"}, {"new one", "new one.fpl"}, {"../up", "up.fpl"}, {"/", nullptr}};
    for (const auto& name : names) {
        program_.platform.expect_input("Enter a name for the new Favorite Pictures List", name.typed);
        if (name.file == nullptr) program_.platform.expect_message("could not be created");
        run(w.Command6.click);
        EXPECT_TRUE(name.file == nullptr || dir_.has(std::string("program/") + name.file)) << name.typed;
    }
    EXPECT_EQ(dir_.read("program/mine.fpl"), "kept");
    EXPECT_FALSE(dir_.has("up.fpl"));
    w.List1.selected.reset();
    run(w.Command7.click);
    run(w.Command8.click);
    w.List1.selected = 0;
    program_.platform.expect_question("    Are you sure you wish to delete this Favorite list called mine ?", false);
    run(w.Command7.click);
    EXPECT_TRUE(dir_.has("program/mine.fpl"));
    w.List1.selected = 0;
    program_.platform.expect_message("NOTE: When you have a Favorite Pictures List open");
    run(w.Command8.click);
    EXPECT_THAT(program_.platform.edited, ElementsAre(dir_.path("program/mine.fpl")));
    program_.platform.expect_question("mine", true);
    run(w.Command7.click);
    EXPECT_FALSE(dir_.has("program/mine.fpl"));
}

TEST_F(Favorites, CopyJobCopiesWithoutOverwriting) {
    const std::string a = picture("photos/a.png");
    dir_.write("other/a.png", "another");
    dir_.write("there/a.png", "mine");
    write_list(a + "\r\n" + dir_.path("other/a.png") + "\r\n/gone.png\r\n");
    files::change_directory(dir_.path("there"));
    SavPic& w = show_copy_job(program_.context);
    EXPECT_EQ(w.Dir1.path, dir_.path("there"));
    EXPECT_THAT(w.File1.items(), ElementsAre("a.png"));
    program_.platform.expect_message("/gone.png");
    run(w.Command1.click);
    EXPECT_EQ(dir_.read("there/a.png"), "mine");
    EXPECT_EQ(dir_.read("there/a (2).png"), "pixels");
    EXPECT_EQ(dir_.read("there/a (3).png"), "another");
    EXPECT_EQ(program_.windows.loaded<SavPic>(), nullptr);
}

TEST_F(Favorites, CopyJobMakesDirectoriesAndEndsAtOnceWithoutAList) {
    SavPic& w = show_copy_job(program_.context);
    program_.platform.expect_input("What would you like to call the new directory", "");
    run(w.Command10.click);
    program_.platform.expect_input("What would you like to call the new directory", "new");
    run(w.Command10.click);
    EXPECT_EQ(w.Dir1.path, photos_ + "/new");
    program_.platform.expect_input("What would you like to call the new directory", "a/b/c");
    program_.platform.expect_message("");
    run(w.Command10.click);
    run(w.Command1.click);
    EXPECT_EQ(program_.windows.loaded<SavPic>(), nullptr);
    EXPECT_FALSE(dir_.has("program/default.fpl"));
}

}  // namespace
}  // namespace quill::viewer
