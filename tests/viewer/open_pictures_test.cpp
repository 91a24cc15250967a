#include "viewer/connect.h"
#include "viewer/viewer_fixture.h"

#include <algorithm>

namespace quill::viewer {
namespace {

using ::testing::ElementsAre;

class OpenPictures : public ViewerTest {
  protected:
    OpenPictures() { provide_viewer(program_.context); }

    static void select(frmOpen& w, const std::string& name) {
        const auto& items = w.File1.items();
        w.File1.selected = static_cast<std::size_t>(std::find(items.begin(), items.end(), name) - items.begin());
        ASSERT_LT(*w.File1.selected, items.size()) << name;
        run(w.File1.change);
    }
};

TEST_F(OpenPictures, ListsPicturesOfTheDirectoryAndFollowsIt) {
    for (const char* name : {"a.JPG", "b.pics", "c.pic", "d.png", "e.txt"})
        dir_.write(std::string("photos/") + name, "x");
    frmOpen& w = show_open_pictures(program_.context);
    EXPECT_TRUE(session.OpenerLoaded);
    EXPECT_EQ(w.width, 6825);
    EXPECT_EQ(w.height, 4380);
    EXPECT_THAT(w.File1.items(), ElementsAre("a.JPG", "b.pics", "c.pic"));
    w.all_kinds.checked = true;
    run(w.all_kinds.click);
    EXPECT_THAT(w.File1.items(), ElementsAre("a.JPG", "b.pics", "c.pic", "d.png"));
    w.Dir1.path = dir_.path("zip-htx directory");
    run(w.Dir1.change);
    EXPECT_EQ(files::current_directory(), dir_.path("zip-htx directory"));
    EXPECT_EQ(w.File1.directory(), dir_.path("zip-htx directory"));
    w.Dir1.path = dir_.path("gone");
    program_.platform.expect_message("can't be opened");
    run(w.Dir1.change);
    EXPECT_EQ(w.Dir1.path, dir_.path("zip-htx directory"));
    run(w.Command2.click);
    EXPECT_FALSE(session.OpenerLoaded);
}

TEST_F(OpenPictures, BeginsElsewhereWhereAnAlbumWasUnpacked) {
    files::change_directory(dir_.path("program/temp"));
    EXPECT_EQ(show_open_pictures(program_.context).Dir1.path, dir_.path("zip-htx directory"));
}

TEST_F(OpenPictures, WithNoFileSelectedTheDirectoryGoesToTheColumn) {
    picture("photos/a.png");
    program_.context.routes.open_pictures();
    run(program_.windows.loaded<frmOpen>()->Command1.click);
    EXPECT_EQ(program_.windows.loaded<frmOpen>(), nullptr);
    tittwo* w = program_.windows.loaded<tittwo>();
    EXPECT_THAT(w->List2.items(), ElementsAre(photos_));

    dir_.make_directory("empty");
    program_.platform.expect_message("more than one directory");
    run(w->adir.click);
    frmOpen& again = *program_.windows.loaded<frmOpen>();
    EXPECT_EQ(again.caption, "Open an additional directory of pictures in the preview window");
    again.Dir1.path = dir_.path("empty");
    run(again.Dir1.change);
    run(again.Command1.click);
    w = program_.windows.loaded<tittwo>();
    EXPECT_THAT(w->List2.items(), ElementsAre(photos_, dir_.path("empty")));
    EXPECT_THAT(w->List3.items(), ElementsAre(photos_ + "/a.png"));

    run(w->sledir.click);
    EXPECT_EQ(program_.windows.loaded<tittwo>(), nullptr);
    EXPECT_EQ(program_.windows.loaded<frmOpen>()->List1.count(), 0U);
}

TEST_F(OpenPictures, APictureOpensInAWindowOfItsOwn) {
    picture("photos/a.jpg", 100, 80);
    frmOpen& w = show_open_pictures(program_.context);
    select(w, "a.jpg");
    pictures().answer_all();
    EXPECT_EQ(w.preview.pixels.size, (platform::PictureSize{100, 80}));
    EXPECT_EQ(w.note.text, "100 x 80 pixels");
    run(w.File1.double_click);
    EXPECT_FALSE(session.OpenerLoaded);
    pictures().answer_all();
    ASSERT_EQ(open_windows(), 1U);
    const frmPic& opened = *session.PicsTable[0];
    EXPECT_EQ(opened.caption, "a.jpg");
    EXPECT_EQ(opened.Label1.text, photos_);
    EXPECT_EQ(opened.Tag, "1");
    EXPECT_TRUE(opened.visible);
    EXPECT_NE(program_.windows.loaded<tittwo>(), nullptr) << "its width was looked at";
}

TEST_F(OpenPictures, ThePreviewFollowsTheSelection) {
    picture("photos/a.jpg");
    dir_.write("photos/b.jpg", "no picture");
    dir_.write("photos/c.pics", "album");
    frmOpen& w = show_open_pictures(program_.context);
    select(w, "a.jpg");
    select(w, "b.jpg");
    EXPECT_EQ(pictures().cancelled, 1U);
    pictures().answer_all();
    EXPECT_EQ(w.preview.pixels.bytes, nullptr);
    EXPECT_FALSE(w.note.text.empty());
    select(w, "c.pics");
    EXPECT_EQ(w.note.text, "");
    EXPECT_EQ(pictures().waiting.size(), 0U);
}

TEST_F(OpenPictures, ADirectoryOfTheCommandLineIsShown) {
    const std::string a = picture("photos/a.png");
    program_.context.routes.show_directory(photos_);
    EXPECT_THAT(program_.windows.loaded<tittwo>()->List3.items(), ElementsAre(a));
}

}  // namespace
}  // namespace quill::viewer
