#include "viewer/open_album.h"

#include "pics/album_builder.h"
#include "viewer/picture_names.h"
#include "viewer/viewer_fixture.h"

namespace quill::viewer {
namespace {

using ::testing::ElementsAre;
using tests::AlbumBuilder;

class OpenAlbum : public ViewerTest {
  protected:
    std::string temp(const std::string& name) { return dir_.path("program/temp/" + name); }
    std::vector<std::string> unpacked() { return show_frame(program_.context).List1.items(); }
};

TEST_F(OpenAlbum, BothFormsAreUnpackedIntoTheColumn) {
    const std::vector<AlbumBuilder::Picture> two = {{"b.jpg", AlbumBuilder::jpeg(100)}, {"a.gif", "GIF89a 2"}};
    openpics(program_.context, dir_.write("plain.pics", AlbumBuilder::plain(two)));
    EXPECT_EQ(session.PicsMode, 1);
    EXPECT_THAT(unpacked(), ElementsAre("b.jpg", "a.gif"));
    EXPECT_EQ(dir_.read("program/temp/b.jpg"), two[0].second);
    EXPECT_EQ(files::current_directory(), dir_.path("program/temp"));
    EXPECT_THAT(program_.windows.loaded<tittwo>()->List1.items(), ElementsAre(temp("b.jpg"), temp("a.gif")));

    dir_.write("program/temp/a.gif", "an older album left this");
    openpics(program_.context, dir_.write("small.pics", AlbumBuilder::with_thumbnails(two)));
    EXPECT_EQ(session.PicsMode, 2);
    EXPECT_THAT(unpacked(), ElementsAre("!R29!b.jpg.bmp", "!R29!a.gif.bmp", "b.jpg", "a.gif"));
    EXPECT_EQ(dir_.read("program/temp/a.gif"), "GIF89a 2");
    tittwo& w = *program_.windows.loaded<tittwo>();
    EXPECT_THAT(w.List1.items(), ElementsAre(temp("!R29!b.jpg.bmp"), temp("!R29!a.gif.bmp")));
    EXPECT_EQ(picture_of_row(w, 1).path, temp("a.gif"));
    EXPECT_FALSE(pictures().log.back().thumbnail) << "what does not last is not cached";
}

TEST_F(OpenAlbum, PicturesOfOneNameAreBothThere) {
    const std::vector<AlbumBuilder::Picture> same = {
        {"a.gif", "GIF89a 1"}, {"a.gif", "GIF89a 2"}, {"../x", "GIF89a 3"}};
    openpics(program_.context, dir_.write("same.pics", AlbumBuilder::with_thumbnails(same)));
    const tittwo& w = *program_.windows.loaded<tittwo>();
    for (std::size_t row = 0; row < 3; ++row) {
        const std::string path = picture_of_row(w, row).path;
        EXPECT_EQ(files::read_file(path).value(), same[row].second) << path;
    }
    EXPECT_FALSE(dir_.has("x") || dir_.has("program/x"));
}

TEST_F(OpenAlbum, WhatIsWrongIsSaid) {
    const struct {
        const char* name;
        std::string bytes;
        const char* message;
        bool opens;
    } cases[] = {
        {"no album", "GIF89a and more than thirty-three bytes", "not a valid PICS file", false},
        {"another form", "PICS_1.1.03.qqq:MULTI.IMAGE.PACK:", "could not be opened", false},
        {"empty", AlbumBuilder::plain({}), "no pictures", true},
        {"cut off", AlbumBuilder::with_thumbnails({{"a.gif", "GIF89a 123456789"}}).substr(0, 15'280), "damaged", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        program_.platform.expect_message(c.message);
        openpics(program_.context, dir_.write("a.pics", c.bytes));
        EXPECT_EQ(program_.windows.loaded<tittwo>() != nullptr, c.opens);
        close_frame(program_.context);
    }
}

TEST_F(OpenAlbum, EmptyingKeepsTheAlbumItself) {
    for (const char* name : {"a.jpg", "b.txt"}) dir_.write(std::string("program/temp/") + name, "x");
    const std::string album = dir_.write("program/temp/c.pics", "x");
    empty_album_directory(session, opener_patterns, album);
    EXPECT_FALSE(dir_.has("program/temp/a.jpg"));
    EXPECT_TRUE(dir_.has("program/temp/b.txt") && dir_.has("program/temp/c.pics"));
}

}  // namespace
}  // namespace quill::viewer
