#include "cli/command_fixture.h"
#include "files/directory.h"
#include "pics/album_builder.h"

#include <gmock/gmock.h>

namespace quill::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using tests::AlbumBuilder;

class AlbumCommandTest : public CommandTest {
  protected:
    std::string path(const std::string& name) const { return directory.path(name); }

    const std::vector<AlbumBuilder::Picture> pictures = {
        {"a.jpg", AlbumBuilder::jpeg(1000)}, {"b\x1B.gif", "GIF89a"}, {"a.jpg", AlbumBuilder::jpeg(700)}};
};

TEST_F(AlbumCommandTest, CreateAndExtractGiveTheFilesBack) {
    directory.write("from/a.jpg", "AAAA");
    directory.write("from/b.gif", "BB");
    EXPECT_EQ(call({"album", "create", path("x.pics"), path("from/a.jpg"), path("from/b.gif")}), ExitStatus::good);
    EXPECT_EQ(out, path("x.pics") + "\t639\n");
    EXPECT_EQ(directory.read("x.pics"), AlbumBuilder::plain({{"a.jpg", "AAAA"}, {"b.gif", "BB"}}));
    EXPECT_EQ(call({"album", "extract", "--into", path("to"), path("x.pics")}), ExitStatus::good);
    EXPECT_EQ(out, path("to/a.jpg") + "\t4\twhole\n" + path("to/b.gif") + "\t2\twhole\n");
    EXPECT_EQ(directory.read("to/a.jpg"), "AAAA");
    EXPECT_EQ(directory.read("to/b.gif"), "BB");
}

TEST_F(AlbumCommandTest, ThumbnailsNeedTheDecoder) {
    directory.write("a.jpg", "AAAA");
    EXPECT_EQ(call({"album", "create", "--thumbnails", path("x.pics"), path("a.jpg")}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr("quillpicture"));
    EXPECT_FALSE(files::exists(path("x.pics")));
}

TEST_F(AlbumCommandTest, CreateReplacesOnlyByForceAndMakesNothingOfUnreadableFiles) {
    directory.write("a.jpg", "AAAA");
    directory.write("x.pics", "old");
    EXPECT_EQ(call({"album", "create", path("x.pics"), path("a.jpg")}), ExitStatus::failed);
    EXPECT_EQ(call({"album", "create", "--force", path("x.pics"), path("a.jpg"), path("none")}), ExitStatus::failed);
    EXPECT_THAT(err, HasSubstr(path("none")));
    EXPECT_EQ(directory.read("x.pics"), "old");
    EXPECT_EQ(call({"album", "create", "--force", path("x.pics"), path("a.jpg")}), ExitStatus::good);
    EXPECT_EQ(directory.read("x.pics"), AlbumBuilder::plain({{"a.jpg", "AAAA"}}));
}

TEST_F(AlbumCommandTest, EqualNamesAreBothExtractedAndNothingIsReplaced) {
    directory.write("x.pics", AlbumBuilder::with_thumbnails(pictures));
    const std::string into = directory.make_directory("to");
    directory.write("to/a.jpg", "mine");
    EXPECT_EQ(call({"album", "extract", "--into", into, path("x.pics"), "a.jpg"}), ExitStatus::good);
    EXPECT_EQ(directory.read("to/a.jpg"), "mine");
    EXPECT_THAT(out, HasSubstr("to/a (2).jpg\t"));
    EXPECT_EQ(call({"album", "extract", "--into", into, path("x.pics"), "a.jpg"}), ExitStatus::good);
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 2);
    EXPECT_THAT(out, HasSubstr("\talready there\n"));
    EXPECT_EQ(call({"album", "extract", "--into", into, path("x.pics"), "c.jpg"}), ExitStatus::failed);
}

TEST_F(AlbumCommandTest, ADamagedAlbumIsListedAndExtractedAsFarAsItGoes) {
    std::string album = AlbumBuilder::plain(
        {{"a.jpg", AlbumBuilder::jpeg(1000)}, {"b.jpg", AlbumBuilder::jpeg(2000)}, {"c.jpg", AlbumBuilder::jpeg(500)}});
    directory.write("x.pics", album.erase(1500, 100));
    EXPECT_EQ(call({"album", "list", path("x.pics")}), ExitStatus::damaged);
    EXPECT_EQ(out, "a.jpg\t1000\twhole\nb.jpg\t1900\tincomplete\nc.jpg\t500\twhole\n");
    EXPECT_EQ(call({"album", "extract", "--json", "--into", path("to"), path("x.pics")}), ExitStatus::damaged);
    EXPECT_THAT(out, HasSubstr(R"("kind": "cut-picture")"));
    EXPECT_EQ(directory.read("to/c.jpg"), AlbumBuilder::jpeg(500));
    directory.write("none.pics", "not an album");
    EXPECT_EQ(call({"album", "list", path("none.pics")}), ExitStatus::failed);
    directory.write("empty.pics", AlbumBuilder::plain({}));
    EXPECT_EQ(call({"album", "list", path("empty.pics")}), ExitStatus::nothing);
}

TEST_F(AlbumCommandTest, HostileNamesAreShownAndWrittenSafely) {
    directory.write("x.pics", AlbumBuilder::plain({{"../../b\x1B.gif", "GIF89a"}, {"/etc/x.jpg", "x"}}));
    EXPECT_EQ(call({"album", "list", path("x.pics")}), ExitStatus::good);
    EXPECT_EQ(out.find('\x1B'), std::string::npos);
    EXPECT_EQ(call({"album", "extract", "--into", path("to"), path("x.pics")}), ExitStatus::good);
    EXPECT_THAT(directory.names(), ElementsAre("to", "x.pics"));
    EXPECT_EQ(directory.read("to/b.gif"), "GIF89a");
    EXPECT_EQ(directory.read("to/x.jpg"), "x");
}

}  // namespace
}  // namespace quill::cli
