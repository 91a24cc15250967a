#include "viewer/favorites_list.h"
#include "viewer/viewer_fixture.h"

#include <filesystem>

namespace quill::viewer {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(CellsOfPage, FollowTheScreen) {
    const std::pair<int, int> cases[] = {{7899, 5},   {7900, 6},   {10999, 6},  {11000, 8},  {12949, 8},
                                         {12950, 9},  {12999, 9},  {13000, 10}, {14999, 10}, {15000, 11},
                                         {15399, 11}, {15400, 12}, {17990, 12}, {17991, 13}};
    for (const auto& [height, cells] : cases) EXPECT_EQ(cells_of_page(height), cells) << height;
}

TEST(CellKind, FollowsTheEndOfTheName) {
    const std::pair<const char*, CellKind> cases[] = {
        {"photo.jpeg", CellKind::picture}, {"a.JPG", CellKind::picture}, {"clip.mpeg", CellKind::other},
        {"x.peg", CellKind::nothing},      {"peg", CellKind::nothing},   {"a.ico", CellKind::icon},
        {"a.dib", CellKind::picture},      {"a.zip", CellKind::other},   {"a.webp", CellKind::picture},
        {"notes", CellKind::nothing},      {"", CellKind::nothing}};
    for (const auto& [name, kind] : cases) EXPECT_EQ(cell_kind(name), kind) << name;
}

class Column : public ViewerTest {
  protected:
    void write_pictures(int count) {
        for (int i = 0; i < count; ++i) picture("photos/" + std::to_string(100 + i) + ".png");
    }
    static std::vector<std::string> cells(tittwo& w) {
        std::vector<std::string> items;
        w.Image7.for_each([&](int, PictureCell& cell) {
            if (!cell.item.empty()) items.push_back(std::filesystem::path(cell.item).filename());
        });
        return items;
    }
    /// Leaves `names` as an unpacked album of the form has them.
    void unpacked_album(int mode, const std::vector<std::string>& names) {
        session.PicsMode = mode;
        show_frame(program_.context).List1.assign(names);
        for (const std::string& name : names) picture("program/temp/" + name);
        files::change_directory(dir_.path("program/temp"));
    }
};

TEST_F(Column, PageIsPaintedFromTheScrollBar) {
    program_.platform.height_of_screen = 12000;  // 8 cells
    write_pictures(6);
    tittwo& w = column();
    EXPECT_FALSE(w.VScroll1.visible);
    EXPECT_EQ(cells(w).size(), 6U);
    EXPECT_TRUE(w.Image7(0).stretch);
    write_pictures(9);
    imgrefresh(w);
    EXPECT_TRUE(w.VScroll1.visible);
    EXPECT_EQ(w.VScroll1.maximum, 1U);
    EXPECT_EQ(cells(w).size(), 8U);
    w.VScroll1.value = 1;
    run(w.VScroll1.change);
    EXPECT_EQ(cells(w).front(), "101.png");
    std::filesystem::remove(dir_.path("photos/108.png"));
    imgrefresh(w);
    EXPECT_EQ(w.VScroll1.value, 0U);
    EXPECT_EQ(cells(w).front(), "100.png");
}

TEST_F(Column, DirectoriesAreListedInTheirOrderWithPicturesOnly) {
    picture("photos/b.jpg");
    dir_.write("photos/notes.txt", "x");
    picture("more/a.png");
    tittwo& w = show_column(program_.context);
    w.List2.assign({photos_, dir_.path("more"), dir_.path("gone")});
    imgrefresh(w);
    EXPECT_THAT(w.List3.items(), ElementsAre(photos_ + "/b.jpg", dir_.path("more/a.png")));
}

TEST_F(Column, AClickOpensByThePathAndTitleOfItsSource) {
    const std::string temp = dir_.path("program/temp");
    picture("photos/a.png");
    tittwo* w = &column();
    EXPECT_EQ(picture_of_row(*w, 0).title, photos_ + "/a.png");
    ASSERT_TRUE(make_favorites_list(session.FavListPath));
    ASSERT_TRUE(add_favorite(session.FavListPath, photos_ + "/a.png"));
    choose_tab(*w, 1);
    EXPECT_EQ(picture_of_row(*w, 0).title, "a.png");
    EXPECT_EQ(picture_of_row(*w, 0).path, photos_ + "/a.png");
    choose_tab(*w, 0);

    unpacked_album(1, {"x.gif", "y.gif"});
    getps(*w);
    EXPECT_EQ(picture_of_row(*w, 1).path, temp + "/y.gif");
    EXPECT_EQ(picture_of_row(*w, 1).title, "y.gif");

    unpacked_album(2, {"!R29!x.gif.bmp", "!R29!y.gif.bmp", "x.gif", "y.gif"});
    getps(*w);
    EXPECT_THAT(cells(*w), ElementsAre("!R29!x.gif.bmp", "!R29!y.gif.bmp"));
    click_cell(*w, 1, MouseButton::left);
    pictures().answer_all();
    ASSERT_EQ(open_windows(), 1U);
    EXPECT_EQ(session.PicsTable.back()->path, temp + "/y.gif");
    EXPECT_EQ(session.PicsTable.back()->caption, "y.gif");
    EXPECT_EQ(session.PicsTable.back()->Label1.text, temp);
    click_cell(*w, 1, MouseButton::left);
    EXPECT_EQ(open_windows(), 2U) << "each click opens one more window";
    for (const MouseButton button : {MouseButton::left, MouseButton::right}) {
        EXPECT_FALSE(click_cell(*w, 9, button));
    }
    EXPECT_EQ(open_windows(), 2U);
}

TEST_F(Column, RightClickOffersRemovalFromAListAndDeletionOfAFile) {
    picture("photos/a.png");
    tittwo& w = column();
    EXPECT_TRUE(click_cell(w, 0, MouseButton::right));
    EXPECT_TRUE(w.remv(2).enabled && !w.remv(1).enabled);
    ASSERT_TRUE(add_favorite(session.FavListPath, photos_ + "/a.png"));
    choose_tab(w, 1);
    EXPECT_TRUE(click_cell(w, 0, MouseButton::right));
    EXPECT_TRUE(w.remv(1).enabled && !w.remv(2).enabled);
    run(w.remv(1).click);
    EXPECT_EQ(dir_.read("program/default.fpl"), "");
    EXPECT_THAT(w.List1.items(), IsEmpty());
}

TEST_F(Column, DeletionAsksAndGoesToTheTrash) {
    const std::string a = picture("photos/a.png"), b = picture("photos/b.png");
    tittwo& w = column();
    click_row(w, 0, MouseButton::right);
    program_.platform.expect_question("Are you sure you wish to delete the file called " + a, false);
    run(w.remv(2).click);
    EXPECT_TRUE(dir_.has("photos/a.png"));
    program_.platform.expect_question("trash", true);
    run(w.remv(2).click);
    EXPECT_THAT(program_.platform.trashed, ElementsAre(a));
    EXPECT_THAT(w.List3.items(), ElementsAre(b));

    program_.platform.trash_works = false;
    click_row(w, 0, MouseButton::right);
    program_.platform.expect_question("Are you sure", true);
    program_.platform.expect_question("you will not be able to bring it back", false);
    run(w.remv(2).click);
    EXPECT_TRUE(dir_.has("photos/b.png"));
    program_.platform.expect_question("Are you sure", true);
    program_.platform.expect_question("you will not be able to bring it back", true);
    run(w.remv(2).click);
    EXPECT_FALSE(dir_.has("photos/b.png"));
    for (const auto& question : program_.platform.questions) EXPECT_TRUE(question.no_is_default);
}

TEST_F(Column, FavoritesTabEndsTheAlbumForGood) {
    picture("photos/a.png");
    tittwo& w = column();
    unpacked_album(1, {"x.gif", "y.gif"});
    choose_tab(w, 1);
    EXPECT_EQ(session.PicsMode, 0);
    EXPECT_FALSE(dir_.has("program/temp/x.gif"));
    EXPECT_TRUE(w.howf(1).checked && !w.howf(0).checked);
    EXPECT_EQ(w.Label1(1).border, 1);
    choose_tab(w, 0);
    EXPECT_THAT(cells(w), ElementsAre("a.png"));
    unpacked_album(1, {"alone.gif"});
    resetviewer(program_.context);
    EXPECT_TRUE(dir_.has("program/temp/alone.gif"));
    EXPECT_EQ(show_frame(program_.context).List1.count(), 0U);
}

TEST_F(Column, ScrollingSeesWhatHasChangedMeanwhile) {
    for (const char* name : {"a.png", "b.png"}) {
        ASSERT_TRUE(add_favorite(session.FavListPath, picture(std::string("photos/") + name)));
    }
    tittwo& w = show_column(program_.context);
    choose_tab(w, 1);
    EXPECT_EQ(w.List1.count(), 2U);
    const std::uint64_t revision = w.List1.revision();
    run(w.VScroll1.change);
    EXPECT_EQ(w.List1.revision(), revision);
    dir_.write("program/default.fpl", photos_ + "/b.png\r\n" + photos_ + "/gone.png\r\n");
    std::filesystem::last_write_time(session.FavListPath,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    run(w.VScroll1.change);
    EXPECT_THAT(cells(w), ElementsAre("b.png"));
}

TEST_F(Column, OnlyThumbnailsInSightAndBesideAreAskedFor) {
    program_.platform.height_of_screen = 7000;  // 5 cells
    write_pictures(100);
    tittwo& w = column();
    EXPECT_EQ(pictures().waiting.size(), 10U);
    EXPECT_EQ(pictures().log.front().priority, platform::PicturePriority::nearby);
    ASSERT_TRUE(pictures().answer_one());
    EXPECT_NE(w.thumbnails.find(photos_ + "/100.png"), nullptr) << "those in sight come first";
    w.VScroll1.value = 50;
    run(w.VScroll1.change);
    EXPECT_EQ(pictures().cancelled, 9U);
    EXPECT_EQ(pictures().waiting.size(), 15U);
    EXPECT_TRUE(pictures().log.back().thumbnail);
    pictures().answer_all();
    EXPECT_LE(w.thumbnails.kept_bytes(), Thumbnails::most_bytes);
}

TEST_F(Column, SetShowsThePicturesOfAnyPlace) {
    program_.platform.expect_message("no pictures");
    show_set(program_.context, {dir_.write("mail/letter.txt", "x")});
    EXPECT_EQ(program_.windows.loaded<tittwo>(), nullptr);
    const std::string a = picture("mail/a.png"), b = picture("photos/b.webp");
    show_set(program_.context, {a, dir_.write("mail/letter.txt", "x"), b});
    tittwo& w = *program_.windows.loaded<tittwo>();
    EXPECT_THAT(w.List3.items(), ElementsAre(a, b));
    click_row(w, 1, MouseButton::right);
    program_.platform.expect_question("trash", true);
    run(w.remv(2).click);
    EXPECT_THAT(w.List3.items(), ElementsAre(a));
}

TEST_F(Column, UnloadingEndsTheAlbumAndTheRequests) {
    tittwo& w = column();
    unpacked_album(2, {"!R29!x.gif.bmp", "x.gif"});
    getps(w);
    run(w.Image1.click);
    EXPECT_EQ(program_.windows.loaded<tittwo>(), nullptr);
    EXPECT_EQ(session.PicsMode, 0);
    EXPECT_FALSE(dir_.has("program/temp/x.gif"));
    program_.windows.collect();
    EXPECT_EQ(pictures().waiting.size(), 0U);
}

TEST_F(Column, GoesToTheBackASecondAfterItWasUsed) {
    tittwo& w = column();
    EXPECT_EQ(w.Timer1.interval, 1000);
    run(w.activate);
    EXPECT_TRUE(w.Timer1.enabled);
    run(w.Timer1.tick);
    EXPECT_TRUE(w.at_back && !w.Timer1.enabled);
    run(w.activate);
    EXPECT_FALSE(w.at_back);
}

}  // namespace
}  // namespace quill::viewer
