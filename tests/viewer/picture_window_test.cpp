#include "shell/small_window.h"
#include "viewer/picture_layout.h"
#include "viewer/viewer_fixture.h"

#include <cstring>

namespace quill::viewer {
namespace {

using ::testing::ElementsAre;

class PictureWindow : public ViewerTest {
  protected:
    /// Opens a window of `width` x `height` pixels around a picture of 200 x 100.
    frmPic& window(int width, int height) {
        frmPic& w = open(picture("photos/a.png", 200, 100));
        w.width = width * 15 + 270;
        w.height = height * 15 + 650;
        lay_out(w);
        return w;
    }
};

TEST_F(PictureWindow, ScrollBarsShowWhatDoesNotFit) {
    const struct {
        const char* name;
        int pane_width, pane_height;
        bool bars;
        bool across, down;
        std::size_t most_across, most_down;
    } cases[] = {
        {"all fits", 300, 200, true, false, false, 0, 0},
        {"exactly", 200, 100, true, false, false, 0, 0},
        {"too wide", 150, 200, true, true, false, 50, 0},
        {"the bar across makes it too tall", 150, 110, true, true, true, 50, 7},
        {"too tall, the bar down takes no width", 200, 60, true, false, true, 0, 40},
        {"bars are off", 50, 50, false, false, false, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        frmPic& w = window(c.pane_width, c.pane_height);
        w.f(8).checked = c.bars;
        lay_out(w);
        EXPECT_EQ(w.HScroll1.visible, c.across);
        EXPECT_EQ(w.VScroll1.visible, c.down);
        EXPECT_EQ(c.across ? w.HScroll1.maximum : 0, c.most_across);
        EXPECT_EQ(c.down ? w.VScroll1.maximum : 0, c.most_down);
        if (c.bars) {
            EXPECT_EQ(w.HScroll1.width, w.Picture1.width);
        }
    }
}

TEST_F(PictureWindow, ScrollBarMovesThePictureAndHidingItLeavesItThere) {
    frmPic& w = window(100, 60);
    w.HScroll1.value = 30;
    run(w.HScroll1.change);
    EXPECT_EQ(w.Image1.left, -30);
    run(w.f(8).click);
    EXPECT_FALSE(w.HScroll1.visible);
    EXPECT_EQ(w.Image1.left, -30);
    run(w.f(8).click);
    EXPECT_EQ(w.Image1.left, -1);
    EXPECT_EQ(w.HScroll1.value, 1U);
}

TEST_F(PictureWindow, ZoomLevelsCountFromTheNaturalSizeAndStepsFromTheDisplayedOne) {
    frmPic& w = window(300, 200);
    const struct {
        int level;
        float width;
        const char* caption;
    } levels[] = {{1, 40, "20% (1 to 5)"},     {4, 100, "50% (1 to 5)"},   {7, 200, "100% (1 to 1)"},
                  {8, 240, "120% (1.5 to 1)"}, {15, 600, "200% (3 to 1)"}, {19, 1000, "500% (5 to 1)"}};
    for (const auto& level : levels) {
        run(w.zi.click);
        run(w.zo(level.level).click);
        EXPECT_FLOAT_EQ(w.Image1.width, level.width);
        EXPECT_FLOAT_EQ(w.Image1.height, level.width / 2);
        EXPECT_EQ(w.zo(level.level).caption, level.caption);
        EXPECT_EQ(w.zl(level.level).caption, level.caption);
    }
    run(w.zl(7).click);
    run(w.zi.click);
    run(w.ipm(3).click);
    EXPECT_FLOAT_EQ(w.Image1.width, 242);
    run(w.zox.click);
    EXPECT_FLOAT_EQ(w.Image1.width, 217.8F);
}

TEST_F(PictureWindow, EitherItemOfTheFitModeChangesTheMode) {
    frmPic& w = window(300, 300);
    run(w.sm(2).click);  // checked already
    EXPECT_TRUE(w.sm(1).checked && w.scm(1).checked && !w.sm(2).checked && !w.scm(2).checked);
    EXPECT_FLOAT_EQ(w.Image1.width, 300);
    EXPECT_FLOAT_EQ(w.Image1.height, 300);
    run(w.zi.click);
    EXPECT_FLOAT_EQ(w.Image1.width, 300);
    w.Image1.stretch = true;
    run(w.scm(1).click);
    EXPECT_TRUE(w.sm(2).checked && w.scm(2).checked && !w.sm(1).checked);
    EXPECT_FALSE(w.Image1.stretch);
    EXPECT_EQ(w.width, 200 * 15 + 120);
    EXPECT_EQ(w.height, 100 * 15 + 500);
    EXPECT_FLOAT_EQ(w.Image1.height, 100);
}

TEST_F(PictureWindow, ZoomAtThePointerKeepsThePointBelowIt) {
    frmPic& w = window(100, 60);
    run(w.zo(19).click);
    w.HScroll1.value = 400;
    w.VScroll1.value = 200;
    run(w.HScroll1.change);
    const double x = 25, y = 10;
    const double across = (x + 400) / w.Image1.width, down = (y + 200) / w.Image1.height;
    zoom_at(w, 1.5, x, y);
    EXPECT_FLOAT_EQ(w.Image1.width, 1500);
    EXPECT_NEAR((x - w.Image1.left) / w.Image1.width, across, 0.001);
    EXPECT_NEAR((y - w.Image1.top) / w.Image1.height, down, 0.001);
    pan(w, 10, -5);
    EXPECT_NEAR((x + 10 - w.Image1.left - 20) / w.Image1.width, across - 20.0 / 1500, 0.01);
    pan(w, 1e6, 1e6);
    EXPECT_EQ(w.HScroll1.value, 1U);
    EXPECT_EQ(w.VScroll1.value, 1U);
    zoom_to_natural_size(w);
    EXPECT_FLOAT_EQ(w.Image1.width, 200);
    zoom_to_fit(w);
    EXPECT_FLOAT_EQ(w.Image1.width, 100);
    EXPECT_FLOAT_EQ(w.Image1.height, 50);
    for (int i = 0; i < 200; ++i) zoom_at(w, 1.25, x, y);
    EXPECT_LE(w.Image1.width, 1e6);
    for (int i = 0; i < 200; ++i) zoom_at(w, 0.8, x, y);
    EXPECT_GE(w.Image1.width, 1);
}

/// Returns pixels in rows, each row a text of one letter a pixel.
platform::Pixels pixels_of(const std::vector<std::string>& rows) {
    auto bytes = std::make_shared<std::vector<std::uint8_t>>();
    for (const std::string& row : rows) {
        for (const char c : row) bytes->insert(bytes->end(), 4, static_cast<std::uint8_t>(c));
    }
    const auto width = static_cast<int>(rows.front().size());
    return {{width, static_cast<int>(rows.size())}, rows.front().size() * 4, {bytes, bytes->data()}};
}

std::vector<std::string> rows_of(const platform::Pixels& pixels) {
    std::vector<std::string> rows(static_cast<std::size_t>(pixels.size.height));
    for (std::size_t y = 0; y < rows.size(); ++y) {
        for (std::size_t x = 0; x < static_cast<std::size_t>(pixels.size.width); ++x) {
            const auto byte = static_cast<char>(pixels.bytes.get()[y * pixels.stride + x * 4]);
            rows[y] += byte == 0 ? '.' : byte;
        }
    }
    return rows;
}

TEST(Mirrored, TakesTheTopLeftPartAtNaturalSize) {
    const platform::Pixels pixels = pixels_of({"abc", "def"});
    EXPECT_THAT(rows_of(mirrored(pixels, {3, 2}, Axis::horizontal)), ElementsAre("cba", "fed"));
    EXPECT_THAT(rows_of(mirrored(pixels, {3, 2}, Axis::vertical)), ElementsAre("def", "abc"));
    EXPECT_THAT(rows_of(mirrored(pixels, {2, 1}, Axis::horizontal)), ElementsAre("ba"));
    EXPECT_THAT(rows_of(mirrored(pixels, {4, 3}, Axis::horizontal)), ElementsAre(".cba", ".fed", "...."));
    EXPECT_THAT(rows_of(mirrored(pixels, {4, 3}, Axis::vertical)), ElementsAre("....", "def.", "abc."));
    EXPECT_THAT(rows_of(mirrored({}, {2, 1}, Axis::vertical)), ElementsAre(".."));
    const platform::Pixels once = mirrored(pixels, {3, 2}, Axis::horizontal);
    EXPECT_THAT(rows_of(mirrored(once, {3, 2}, Axis::horizontal)), ElementsAre("abc", "def"));
}

TEST_F(PictureWindow, FlipKeepsTheNaturalPictureAndTheDisplayedSize) {
    frmPic& w = window(300, 200);
    run(w.zo(4).click);
    const auto* const natural = w.Image20.pixels.bytes.get();
    run(w.fliph.click);
    EXPECT_EQ(w.Image1.pixels.size, (platform::PictureSize{100, 50}));
    EXPECT_EQ(w.Image20.pixels.bytes.get(), natural);
    run(w.zo(7).click);
    EXPECT_FLOAT_EQ(w.Image1.width, 200);
    const auto revision = w.Image1.revision;
    run(w.fhv(2).click);
    EXPECT_GT(w.Image1.revision, revision);
}

TEST_F(PictureWindow, OpensAsLargeAsItsPictureWithinTheScreen) {
    const int beside = column().width;
    const struct {
        const char* name;
        int width, height;
        bool from_opener;
        int window_width, window_height;
        bool fixed;  ///< directly beside the column
    } cases[] = {
        {"small", 100, 80, false, 1620, 1700, false},
        {"1 x 1", 1, 1, false, 135, 515, false},
        {"tall", 100, 2000, false, 1620, 12000 - 1300, false},
        {"wide", 3000, 80, false, 15000 - beside - 200, 1700, true},
        {"tall, from the opener", 100, 2000, true, 1620, 12000 - 1350, true},
        {"wide, from the opener", 3000, 80, true, 15000 - beside - 500, 1700, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        frmPic& w = new_picture_window(program_.context);
        const std::string path = picture(std::string("photos/") + c.name, c.width, c.height);
        load_into_new_window(w, path, c.from_opener ? from_opener : from_column);
        EXPECT_FALSE(w.visible);
        pictures().answer_all();
        EXPECT_TRUE(w.visible);
        EXPECT_EQ(w.width, c.window_width);
        EXPECT_EQ(w.height, c.window_height);
        EXPECT_GE(w.left, beside);
        EXPECT_TRUE(!c.fixed || w.left == beside);
        EXPECT_EQ(w.top, 0);
        EXPECT_TRUE(w.Image1.stretch);
    }
}

TEST_F(PictureWindow, PixelsAreTheScreensOwnWhereThatIsFine) {
    program_.platform.twips_of_pixel = 7.5;
    EXPECT_EQ(open(picture("photos/a.png", 200, 100)).width, 200 * 15 / 2 + 120);
}

TEST_F(PictureWindow, SlotsAreNeverUsedAgain) {
    const std::string path = picture("photos/a.png");
    EXPECT_EQ(open(path).Tag, "1");
    run(session.PicsTable[0]->mend.click);
    EXPECT_EQ(session.PicsTable[0], nullptr);
    EXPECT_EQ(open(path).Tag, "2");
    run(program_.windows.loaded<frmMDI>()->close);
    EXPECT_EQ(open_windows(), 0U);
    EXPECT_EQ(program_.windows.loaded<tittwo>(), nullptr);
    EXPECT_EQ(open(path).Tag, "3");
}

TEST_F(PictureWindow, ClosedBeforeItsPictureComesNothingOpensAgain) {
    opendoc(program_.context, picture("photos/a.png"), "a.png");
    run(program_.windows.loaded<frmMDI>()->close);
    pictures().answer_all();
    EXPECT_EQ(program_.windows.loaded<frmMDI>(), nullptr);
    EXPECT_EQ(open_windows(), 0U);
}

TEST_F(PictureWindow, DamagedPictureSaysSo) {
    platform::Picture part = tests::plain_picture(40, 30, 0xFF000000);
    part.state = platform::PictureState::partial;
    part.decoded_percent = 60;
    part.reason = "the file is cut off";
    const std::string path = dir_.write("photos/half.jpg", "x");
    pictures().set(path, part);
    EXPECT_THAT(open(path).note.text, ::testing::HasSubstr("60%"));
    frmPic& none = open(dir_.write("photos/none.jpg", "x"));
    EXPECT_TRUE(none.visible && none.note.visible);
    EXPECT_EQ(none.width, 120);
    EXPECT_FALSE(none.note.text.empty());
    run(none.zi.click);
    run(none.fliph.click);
    zoom_at(none, 2, 1, 1);
    zoom_to_fit(none);
    zoom_to_natural_size(none);
}

TEST_F(PictureWindow, ItemsOfTheLargerViewerStayGrey) {
    frmPic& w = open(picture("photos/a.png"));
    std::vector<const controls::MenuItem*> grey = {&w.ssp, &w.rotaten, &w.rotatea};
    for (const int i : {4, 5, 6, 9, 10, 11, 13}) grey.push_back(&w.f(i));
    w.mdm.for_each([&](int, controls::MenuItem& item) { grey.push_back(&item); });
    run(w.sm(1).click);
    run(w.activate);
    for (const controls::MenuItem* item : grey) {
        EXPECT_FALSE(item->enabled) << item->caption;
        EXPECT_FALSE(item->click) << item->caption;
    }
    for (int i = 0; i < 3; ++i) program_.platform.expect_message("");
    run(w.h(3).click);
    w.lastf(0).caption = "old";
    run(w.fmen.click);
    EXPECT_EQ(w.lastf(0).caption, "");
}

TEST_F(PictureWindow, WhatItsPictureCameFromDecidesOnSavingAndTheList) {
    frmPic& from_directory = open(picture("photos/a.png"));
    EXPECT_FALSE(from_directory.f(2).enabled);
    EXPECT_TRUE(from_directory.addcur.enabled);
    EXPECT_EQ(from_directory.Label1.text, photos_);
    session.PicsMode = 1;
    EXPECT_TRUE(open(picture("program/temp/b.png")).f(2).enabled);
    choose_tab(*program_.windows.loaded<tittwo>(), 1);
    frmPic& favorite = open(picture("photos/c.png"));
    EXPECT_EQ(favorite.Label1.text, "");
    EXPECT_FALSE(favorite.addcur.enabled);
    run(from_directory.activate);
    EXPECT_FALSE(from_directory.addcur.enabled);
}

TEST_F(PictureWindow, SavingACopyOverwritesNothing) {
    session.PicsMode = 1;
    picture("program/temp/b.png");
    dir_.write("photos/b.png", "mine");
    files::change_directory(dir_.path("program/temp"));
    frmPic& w = opendoc(program_.context, dir_.path("program/temp/b.png"), "b.png");
    run(w.f(2).click);
    auto* const chooser = program_.windows.loaded<shell::Form4>();
    ASSERT_NE(chooser, nullptr);
    EXPECT_EQ(chooser->caption, "Copy / save");
    EXPECT_EQ(chooser->Command1.caption, "Copy here");
    chooser->Dir1.path = photos_;
    program_.platform.expect_message("b (2).png");
    run(chooser->Command1.click);
    EXPECT_EQ(dir_.read("photos/b.png"), "mine");
    EXPECT_EQ(dir_.read("photos/b (2).png"), "pixels");
    EXPECT_EQ(program_.windows.loaded<shell::Form4>(), nullptr);
}

TEST_F(PictureWindow, NeighboursOfTheListShowInTheSameWindowAndAreDecodedAhead) {
    picture("photos/a.png", 10, 10);
    picture("photos/b.png", 20, 20);
    const std::string last = picture("photos/c.png", 2000, 1000);
    tittwo& list = column();
    pictures().answer_all();
    click_row(list, 0, MouseButton::left);
    pictures().answer_all();
    frmPic& w = *session.PicsTable[0];
    show_neighbour(w, -1);
    EXPECT_EQ(w.caption, photos_ + "/a.png");
    const std::size_t asked = pictures().log.size();
    show_neighbour(w, 1);
    EXPECT_FLOAT_EQ(w.Image20.width, 20) << "it was decoded already";
    ASSERT_EQ(pictures().log.size(), asked + 1) << "the one before was shown just now";
    EXPECT_EQ(pictures().log.back().source.path, last);
    EXPECT_EQ(pictures().log.back().priority, platform::PicturePriority::nearby);
    pictures().answer_all();
    show_neighbour(w, 1);
    EXPECT_EQ(w.path, last);
    EXPECT_EQ(list.current, 2U);
    EXPECT_LT(w.Image1.width, 2000) << "it fits its window";
    show_neighbour(w, 1);
    EXPECT_EQ(w.path, last);
    EXPECT_EQ(open_windows(), 1U);
}

/// Returns the color of the visible picture.
std::uint32_t color_of(const frmPic& w) {
    std::uint32_t color = 0;
    if (w.Image1.pixels.bytes) std::memcpy(&color, w.Image1.pixels.bytes.get(), sizeof color);
    return color;
}

TEST_F(PictureWindow, AnAnimationRunsAsOftenAsItSaysAndWaitsForNoFrame) {
    const std::string path = picture("photos/a.gif");
    for (std::size_t i = 0; i < 3; ++i) {
        platform::Picture frame = tests::plain_picture(40, 30, 0xFF000000U + static_cast<std::uint32_t>(i));
        frame.count = 3;
        frame.animated = true;
        frame.delay = i == 0 ? 0 : 40;
        frame.repeats = 1;
        pictures().set(path, frame, 0, i);
    }
    frmPic& w = open(path);
    EXPECT_TRUE(w.frame_time.enabled);
    EXPECT_EQ(w.frame_time.interval, 100) << "none is stated";
    std::vector<std::uint32_t> shown;
    for (int i = 0; i < 8; ++i) {
        shown.push_back(color_of(w) & 0xFFU);
        if (w.frame_time.enabled) run(w.frame_time.tick);
        pictures().answer_all();
    }
    EXPECT_THAT(shown, ElementsAre(0U, 1U, 2U, 0U, 1U, 2U, 2U, 2U));
    EXPECT_EQ(w.frame_time.interval, 40);

    frmPic& late = opendoc(program_.context, path, path);
    ASSERT_TRUE(pictures().answer_one());
    run(late.frame_time.tick);
    EXPECT_EQ(color_of(late), 0xFF000000U) << "the next frame is not there yet";
    ASSERT_TRUE(pictures().answer_one());
    EXPECT_EQ(color_of(late), 0xFF000001U);
    run(late.fliph.click);
    EXPECT_FALSE(late.frame_time.enabled);
    EXPECT_EQ(pictures().answer_all(), 0U);
}

TEST_F(PictureWindow, PagesAreTurnedWithinTheFile) {
    const std::string path = picture("photos/a.tif");
    for (std::size_t i = 0; i < 2; ++i) {
        platform::Picture page = tests::plain_picture(40 + 10 * static_cast<int>(i), 30, 0xFF000000U);
        page.count = 2;
        pictures().set(path, page, 0, i);
    }
    frmPic& w = open(path);
    EXPECT_TRUE(w.pages.visible);
    EXPECT_EQ(w.page_number.text, "Page 1 of 2");
    EXPECT_FALSE(w.page_back.enabled);
    for (int i = 0; i < 3; ++i) {
        run(w.page_on.click);
        pictures().answer_all();
    }
    EXPECT_EQ(w.page_number.text, "Page 2 of 2");
    EXPECT_EQ(w.Image20.width, 50);
    EXPECT_FALSE(w.page_on.enabled);
    EXPECT_FALSE(open(picture("photos/b.png")).pages.visible);
}

}  // namespace
}  // namespace quill::viewer
