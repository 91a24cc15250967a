#include "desktop/picture_preview.h"
#include "desktop/picture_service.h"
#include "files/directory.h"
#include "files/file_stamp.h"
#include "support/fake_pictures.h"
#include "support/temporary_directory.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QThread>
#include <QThreadPool>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

namespace quill::tests {
namespace {

using platform::Picture;
using platform::PictureState;

void wait_until(const std::function<bool()>& condition) {
    while (!condition()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

std::string png_of(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::green);
    QBuffer buffer;
    image.save(&buffer, "png");
    return buffer.data().toStdString();
}

class PictureServiceTest : public ::testing::Test {
  protected:
    /// Requests the file and stores the answer under its name.
    platform::Pictures::Ticket ask(const std::string& path, platform::PicturePriority priority = {}) {
        platform::PictureRequest request;
        request.source.path = path;
        request.bounds = {16, 16};
        request.priority = priority;
        return service.request(request, [this, path](const Picture& picture) { answers.emplace_back(path, picture); });
    }

    TemporaryDirectory here;
    desktop::EventLoop events;
    desktop::PictureService service{events, QUILL_PICTURE_PROGRAM, here.path("thumbnails")};
    std::vector<std::pair<std::string, Picture>> answers;
};

TEST_F(PictureServiceTest, AnswersLaterWithPixelsThatFit) {
    ask(here.write("a.png", png_of(32, 8)));
    EXPECT_TRUE(answers.empty());
    wait_until([&] { return !answers.empty(); });
    EXPECT_EQ(answers[0].second.state, PictureState::whole) << answers[0].second.reason;
    EXPECT_EQ(answers[0].second.pixels.size, (platform::PictureSize{16, 4}));
    EXPECT_EQ(answers[0].second.original, (platform::PictureSize{32, 8}));
}

TEST_F(PictureServiceTest, TakesTheMostUrgentFirstAndDropsWhatIsCancelled) {
    const std::string path = here.write("a.png", png_of(8, 8));
    // Those that the workers get at once come first.
    const auto places = static_cast<std::size_t>(QThread::idealThreadCount());
    for (std::size_t i = 0; i < places; ++i) ask(path);
    const std::string low = here.write("low.png", png_of(8, 8));
    const std::string high = here.write("high.png", png_of(8, 8));
    const auto dropped = ask(here.write("dropped.png", png_of(8, 8)));
    ask(low, platform::PicturePriority::background);
    ask(high, platform::PicturePriority::visible);
    service.cancel(dropped);
    wait_until([&] { return answers.size() == places + 2; });
    const auto place = [&](const std::string& name) {
        return std::find_if(answers.begin(), answers.end(), [&](const auto& each) { return each.first == name; });
    };
    EXPECT_LT(place(high), answers.end());
    EXPECT_TRUE(place(high) < place(low) || places > 1);
    EXPECT_LE(service.workers(), places);
}

TEST_F(PictureServiceTest, AWorkerThatDiesCostsOnePicture) {
    desktop::PictureService broken(events, "/bin/false", {});
    platform::PictureRequest request;
    request.source.path = here.write("a.png", png_of(8, 8));
    std::size_t failed = 0;
    const std::size_t asked = 10;
    for (std::size_t i = 0; i < asked; ++i) {
        broken.request(request,
                       [&](const Picture& picture) { failed += picture.state == PictureState::failed ? 1 : 0; });
    }
    wait_until([&] { return failed == asked; });
    EXPECT_NE(broken.confinement(), service.confinement());
}

TEST_F(PictureServiceTest, FilesThatCannotBeReadFail) {
    ask(here.path("nowhere"));
    ask(here.path());
    wait_until([&] { return answers.size() == 2; });
    for (const auto& answer : answers) EXPECT_EQ(answer.second.state, PictureState::failed);
}

TEST_F(PictureServiceTest, ThumbnailsComeFromTheSharedCacheAndGoThere) {
    const auto thumbnail = [&](const std::string& path) {
        answers.clear();
        service.request({.source = {.path = path}, .bounds = {128, 128}, .thumbnail = true},
                        [this, path](const Picture& picture) { answers.emplace_back(path, picture); });
        wait_until([&] { return !answers.empty(); });
        QThreadPool::globalInstance()->waitForDone();
        return answers[0].second;
    };
    const auto color = [](const Picture& picture) {
        return picture.pixels.bytes ? *reinterpret_cast<const std::uint32_t*>(picture.pixels.bytes.get()) : 0;
    };
    const thumbnails::ThumbnailCache cache(here.path("thumbnails"));
    const std::string path = here.write("a b.png", png_of(300, 200));
    EXPECT_EQ(color(thumbnail(path)), 0xFF00FF00U);
    const std::int64_t now = files::stamp_of(path)->modified;
    const auto kept = cache.find({path, now, 128});
    ASSERT_TRUE(kept);
    EXPECT_EQ(std::filesystem::status(kept->thumbnail).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(std::filesystem::status(here.path("thumbnails/normal")).permissions(), std::filesystem::perms(0700));
    EXPECT_FALSE(cache.find({path, now + 1, 128})) << "an older file's";

    // Another program's thumbnail is shown; one that is not a picture is replaced by the picture itself.
    std::filesystem::remove(kept->thumbnail);
    Picture red = plain_picture(128, 85, 0xFFFF0000);
    red.original = {300, 200};
    cache.keep({path, now, 128}, red);
    EXPECT_EQ(color(thumbnail(path)), 0xFFFF0000U);
    EXPECT_EQ(answers[0].second.original, (platform::PictureSize{300, 200}));
    std::string png = *files::read_file(kept->thumbnail);
    std::ofstream(kept->thumbnail, std::ios::binary) << png.substr(0, png.find("IDAT") + 8);
    EXPECT_EQ(color(thumbnail(path)), 0xFF00FF00U);

    const std::string bad = here.write("bad.png", "no picture");
    const std::string reason = thumbnail(bad).reason;
    EXPECT_FALSE(cache.find({bad, files::stamp_of(bad)->modified, 128})->reason.empty());
    EXPECT_EQ(thumbnail(bad).reason, reason);
}

TEST(PicturePreview, ShowsOnlyTheLastFileThatItWasGiven) {
    FakePictures pictures;
    pictures.set("a", plain_picture(2, 1, 0xFF00FF00));
    pictures.set("b", plain_picture(3, 7, 0xFF00FF00));
    desktop::PicturePreview preview;
    preview.show_file("a");
    EXPECT_FALSE(preview.has_picture()) << "nobody decodes yet";
    preview.use(pictures);
    preview.show_file("a");
    preview.show_file("b");
    EXPECT_EQ(pictures.answer_all(), 1U);
    EXPECT_TRUE(preview.has_picture());
    EXPECT_EQ(preview.maximumHeight(), 7);
    preview.show_file("nowhere");
    preview.show_file({});
    EXPECT_FALSE(preview.has_picture()) << "at once";
}

}  // namespace
}  // namespace quill::tests
