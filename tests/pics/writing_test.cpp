#include "pics/writing.h"

#include "files/directory.h"
#include "pics/album.h"
#include "pics/album_builder.h"
#include "pics/unpacking.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <unistd.h>

namespace quill::pics {
namespace {

using tests::AlbumBuilder;
using tests::TemporaryDirectory;

class WritingTest : public ::testing::Test {
  protected:
    AlbumRequest request(const std::vector<AlbumBuilder::Picture>& pictures, Form form) const {
        AlbumRequest out;
        out.path = here.path("album.pics");
        out.form = form;
        out.thumbnail = [](const Item& item) { return std::string(20'000, item.name.starts_with("a") ? 'a' : 'b'); };
        for (const auto& [name, bytes] : pictures) out.items.push_back({here.write("from/" + name, bytes), name});
        EXPECT_TRUE(measure(out.items).empty());
        return out;
    }
    std::string write(const AlbumRequest& what) {
        const auto written = write_album(what);
        const auto* failure = std::get_if<WriteFailure>(&written);
        EXPECT_EQ(failure, nullptr) << failure->error.text;
        return failure == nullptr ? files::read_file(std::get<std::string>(written)).value() : std::string();
    }
    ErrorCode failure(const AlbumRequest& what) {
        const auto written = write_album(what);
        return std::holds_alternative<WriteFailure>(written) ? std::get<WriteFailure>(written).error.code
                                                             : ErrorCode::bad_argument;
    }

    TemporaryDirectory here;
    const std::vector<AlbumBuilder::Picture> two = {{"a.jpg", std::string(1000, 'A')},
                                                    {"b.gif", std::string(250, 'B')}};
};

TEST_F(WritingTest, BothFormsAreWrittenByteForByte) {
    EXPECT_EQ(write(request(two, Form::plain)), AlbumBuilder::plain(two));
    files::remove_file(here.path("album.pics"));
    EXPECT_EQ(write(request(two, Form::with_thumbnails)), AlbumBuilder::with_thumbnails(two));
}

TEST_F(WritingTest, NothingIsReplacedUnlessItIsEmptyOrWanted) {
    AlbumRequest what = request(two, Form::plain);
    here.write("album.pics", "xy");
    EXPECT_EQ(failure(what), ErrorCode::exists);
    EXPECT_EQ(here.read("album.pics"), "xy");
    what.on_collision = files::OnCollision::replace;
    EXPECT_EQ(write(what), AlbumBuilder::plain(two));
    what.on_collision = files::OnCollision::fail;
    here.write("album.pics", "x");
    EXPECT_EQ(write(what), AlbumBuilder::plain(two));
}

TEST_F(WritingTest, AFailureLeavesNoFile) {
    AlbumRequest what = request(two, Form::plain);
    here.write("from/b.gif", "shorter");
    EXPECT_EQ(failure(what), ErrorCode::io);
    files::remove_file(here.path("from/b.gif"));
    EXPECT_EQ(failure(what), ErrorCode::not_found);
    EXPECT_EQ(measure(what.items).size(), 1U);
    what = request(two, Form::with_thumbnails);
    what.watch = [](std::uint64_t done) { return done < 15'000; };
    EXPECT_EQ(failure(what), ErrorCode::cancelled);
    EXPECT_FALSE(here.has("album.pics"));
}

TEST_F(WritingTest, UnpackingGivesThePicturesBackAndReplacesNothing) {
    for (const Form form : {Form::plain, Form::with_thumbnails}) {
        write(request(two, form));
        const auto album = Album::open(here.path("album.pics"));
        ASSERT_TRUE(album.ok());
        for (const Entry& entry : album->entries()) {
            const auto unpacked = unpack_picture(*album, entry, here.path(entry.file_name));
            ASSERT_TRUE(unpacked.ok());
            EXPECT_EQ(files::read_file(unpacked->path).value(), here.read("from/" + entry.name));
        }
        const auto thumbnail = unpack_thumbnail(*album, album->entries()[1], here.path("t.bmp"));
        EXPECT_EQ(thumbnail.ok(), form == Form::with_thumbnails);
        EXPECT_TRUE(!thumbnail || files::read_file(*thumbnail).value() == std::string(thumbnail_size, 'b'));
        files::remove_file(here.path("album.pics"));
    }
    EXPECT_TRUE(here.has("a (2).jpg")) << "of the second round";
}

TEST_F(WritingTest, AlbumsBeyondTwoGibibytesAreMeasuredAndRead) {
    AlbumRequest what;
    what.items = {{"", "a.jpg", 3'000'000'000}, {"", "b.jpg", 10}};
    EXPECT_EQ(album_size(what), 33 + 3'000'000'010 + 2 * 300);

    const std::string path = here.write("album.pics", AlbumBuilder::plain({}));
    ASSERT_EQ(truncate(path.c_str(), 33 + 3'000'000'010), 0);  // sparse
    std::ofstream(path, std::ios::app) << AlbumBuilder::record("b.jpg", "10")
                                       << AlbumBuilder::record("a.jpg", "3000000000");
    const auto album = Album::open(path);
    ASSERT_TRUE(album.ok());
    ASSERT_EQ(album->entries().size(), 2U);
    EXPECT_EQ(album->entries()[1].offset, 3'000'000'033U);
    EXPECT_EQ(album->entries()[1].verdict, report::Verdict::whole);
    ASSERT_EQ(album->problems().size(), 1U);
    EXPECT_EQ(album->problems()[0].kind, report::ProblemKind::beyond_old_readers);
}

}  // namespace
}  // namespace quill::pics
