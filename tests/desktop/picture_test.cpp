#include "checksum/checksum.h"
#include "desktop/picture_preview.h"
#include "desktop/picture_reading.h"
#include "support/temporary_directory.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImageReader>
#include <QImageWriter>
#include <QSemaphore>
#include <QtEndian>
#include <gtest/gtest.h>

#include <mutex>

namespace quill::tests {
namespace {

using namespace std::literals;

std::string number(std::uint32_t value) {
    const quint32 bytes = qToBigEndian(value);
    return {reinterpret_cast<const char*>(&bytes), sizeof bytes};
}

std::string chunk(std::string_view type, std::string_view data) {
    const std::string body = std::string(type).append(data);
    return number(static_cast<std::uint32_t>(data.size())) + body + number(quill::crc32(0, body));
}

/// The beginning of a PNG that states this size: 57 bytes with nothing to draw.
std::string png_of(std::uint32_t width, std::uint32_t height, std::string_view depth_and_colour = "\x08\x06",
                   const std::string& more = {}) {
    const std::string header = number(width) + number(height) + std::string(depth_and_colour) + std::string(3, '\0');
    return "\x89PNG\r\n\x1A\n" + chunk("IHDR", header) + more + chunk("IDAT", "") + chunk("IEND", "");
}

/// An icon file that states 32 by 32 pixels.
std::string icon_of(std::string_view picture) {
    return std::string("\0\0\1\0\1\0\x20\x20\0\0\1\0\x20\0\0\0\1\0\x16\0\0\0"sv).append(picture);
}

std::string picture_as(const char* format, QSize size) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::green);
    QBuffer buffer;
    EXPECT_TRUE(QImageWriter(&buffer, format).write(picture)) << format;
    return buffer.data().toStdString();
}

TEST(ReadPicture, ReadsEveryPlainKindByItsContentAndScalesItDown) {
    const TemporaryDirectory here;
    for (const char* format : {"png", "jpg", "bmp", "tiff", "webp", "ppm", "pgm", "xpm", "ico"}) {
        const std::string path = here.write("picture.dat", picture_as(format, {90, 30}));
        EXPECT_EQ(desktop::read_picture(path, {30, 30}).size(), QSize(30, 10)) << format;
        EXPECT_EQ(desktop::read_picture(path, {200, 200}).size(), QSize(90, 30)) << format;
    }
    const std::string in_icon = icon_of(picture_as("png", {90, 30}));
    EXPECT_EQ(desktop::read_picture(here.write("png.ico", in_icon), {30, 30}).size(), QSize(30, 10));
    here.write("drawing.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)");
    for (const char* other : {"drawing.svg", "empty", "nowhere"}) {
        if (other == "empty"sv) here.write(other, "");
        EXPECT_TRUE(desktop::read_picture(here.path(other), {300, 300}).isNull()) << other;
    }
}

TEST(ReadPicture, BoundsTheMemoryByWhatTheHeaderStates) {
    constexpr auto deep = "\x10\x06"sv;  // 16 bits a channel
    struct Case {
        const char* what;
        std::string bytes;
        bool read;
    };
    const std::string gif = "GIF89a\x58\x1B\x58\x1B\x80\0\0\0\0\0\xFF\xFF\xFF,\0\0\0\0\x58\x1B\x58\x1B\0\2\2\x44\1\0;"s;
    const std::string bitmap = "\x28\0\0\0\0\1\0\0\x58\x1B\0\0\1\0\x20\0"s + std::string(24, '\0');
    const Case cases[] = {
        {"a photograph", png_of(8000, 6000), true},
        {"a deep picture", png_of(4000, 4000, deep), true},
        {"wide and high", png_of(8000, 8000), false},
        {"deep", png_of(5000, 5000, deep), false},
        {"all height", png_of(1, 900'000), false},
        {"all width", png_of(900'000, 1), false},
        {"as far as the format goes", png_of(0x7FFFFFFF, 0x7FFFFFFF), false},
        {"nothing", png_of(0, 0), false},
        {"in an icon", icon_of(png_of(8000, 8000)), false},
        {"an animation", gif, false},
        {"an icon's bitmap", icon_of(bitmap), false},
        {"a drawing", R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)", false},
    };
    for (const Case& each : cases) {
        QByteArray content = desktop::plain_picture(each.bytes);
        QBuffer buffer(&content);
        const auto memory = desktop::picture_memory(QImageReader(&buffer));
        EXPECT_EQ(memory && *memory <= desktop::most_picture_memory, each.read) << each.what;
    }
}

TEST(ReadPicture, LeavesTextInPngPackedUp) {
    const std::string text = chunk("zTXt", std::string("k\0\0", 3) + std::string(5000, 'x'));
    const std::string palette = chunk("PLTE", "\1\2\3");
    const std::string png = png_of(2, 2, "\x08\x03", text + palette + text);
    for (const std::string& whole : {png, icon_of(png)}) {
        EXPECT_EQ(desktop::plain_picture(whole).toStdString(), png_of(2, 2, "\x08\x03", palette));
        for (std::size_t length = 0; length < whole.size(); length += 7) {
            EXPECT_LE(desktop::plain_picture(std::string_view(whole).substr(0, length)).size(),
                      static_cast<qsizetype>(length));
        }
    }
}

/// Reads no file: notes what it is asked for and waits until it may go on.
struct SlowReader {
    QImage operator()(const std::string& path) {
        {
            const std::scoped_lock lock(mutex);
            asked.push_back(path);
            most_at_once = std::max(most_at_once, ++at_once);
        }
        begun.release();
        may_go_on.acquire();
        const std::scoped_lock lock(mutex);
        --at_once;
        return QImage(static_cast<int>(path.size()), 1, QImage::Format_RGB32);
    }

    std::mutex mutex;
    std::vector<std::string> asked;
    int at_once = 0, most_at_once = 0;
    QSemaphore begun, may_go_on;
};

TEST(PicturePreview, ReadsOnePictureAtATimeAndOnlyTheLastThatWaits) {
    SlowReader reader;
    desktop::PicturePreview preview([&reader](const std::string& path, QSize) { return reader(path); });
    preview.show_file("a");
    reader.begun.acquire();
    for (const char* path : {"bb", "ccc", "dddd"}) preview.show_file(path);
    reader.may_go_on.release(4);
    while (!preview.has_picture()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(reader.asked, (std::vector<std::string>{"a", "dddd"}));
    EXPECT_EQ(reader.most_at_once, 1);
    EXPECT_EQ(preview.maximumHeight(), 1);

    preview.show_file("eeeee");
    preview.show_file({});
    EXPECT_FALSE(preview.has_picture()) << "at once";
}

}  // namespace
}  // namespace quill::tests
