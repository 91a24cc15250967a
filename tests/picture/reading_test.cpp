#include "picture/reading.h"

#include "checksum/checksum.h"
#include "picture/decoder.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QImageWriter>
#include <QtEndian>
#include <gtest/gtest.h>

namespace quill::picture {
namespace {

using namespace std::literals;

std::string number(std::uint32_t value) {
    const quint32 bytes = qToBigEndian(value);
    return {reinterpret_cast<const char*>(&bytes), sizeof bytes};
}

std::string chunk(std::string_view type, std::string_view data) {
    const std::string body = std::string(type).append(data);
    return number(static_cast<std::uint32_t>(data.size())) + body + number(crc32(0, body));
}

/// Returns the beginning of a PNG that states this size: 57 bytes with nothing to draw.
std::string png_of(std::uint32_t width, std::uint32_t height, std::string_view depth_and_colour = "\x08\x06",
                   const std::string& more = {}) {
    const std::string header = number(width) + number(height) + std::string(depth_and_colour) + std::string(3, '\0');
    return "\x89PNG\r\n\x1A\n" + chunk("IHDR", header) + more + chunk("IDAT", "") + chunk("IEND", "");
}

/// Returns an icon file that states 32 by 32 pixels.
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

Decoded decode(const std::string& file, QSize bounds = {}, unsigned index = 0) {
    Decoder decoder;
    return decoder.decode(file, {bounds, index, 0});
}

TEST(Decoder, ReadsEveryKindByItsContentAndScalesItDown) {
    for (const char* format : {"png", "jpg", "bmp", "tiff", "webp", "ppm", "pgm", "xpm", "ico"}) {
        const std::string file = picture_as(format, {90, 30});
        EXPECT_EQ(decode(file, {30, 30}).image.size(), QSize(30, 10)) << format;
        const Decoded whole = decode(file, {200, 200});
        EXPECT_EQ(whole.image.size(), QSize(90, 30)) << format;
        EXPECT_EQ(whole.original, QSize(90, 30)) << format;
        EXPECT_EQ(whole.fault, worker::Fault::none) << format;
        EXPECT_EQ(decode(file, {}, 1).fault, worker::Fault::no_such_image) << format;
    }
    EXPECT_EQ(decode(icon_of(picture_as("png", {90, 30})), {30, 30}).image.size(), QSize(30, 10));
    for (const char* other : {"", "text", R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)"}) {
        EXPECT_EQ(decode(other).fault, worker::Fault::not_a_picture) << other;
    }
    EXPECT_EQ(warm_up().join(" ").toStdString(), "");
}

TEST(Decoder, ShowsWhatADamagedFileStillHas) {
    QImage image(64, 64, QImage::Format_RGB32);
    for (int i = 0; i < 64 * 64; ++i) image.setPixel(i % 64, i / 64, qRgb(i * 7 % 256, i * 31 % 256, i * 77 % 256));
    for (const char* format : {"png", "jpg", "bmp", "pcx"}) {
        QBuffer buffer;
        if (format != "pcx"sv) QImageWriter(&buffer, format).write(image);
        std::string file = buffer.data().toStdString();
        if (format == "pcx"sv) {
            file = "\x0A\5\0\x08\0\0\0\0\x3F\0\x3F\0"s + std::string(53, '\0') + "\3\x40\0"s;
            file.resize(128);
            file.append(64 * 64 * 3, '\x55');
        }
        EXPECT_EQ(decode(file).percent, 100) << format;
        const Decoded half = decode(file.substr(0, file.size() / 2 + 60));
        EXPECT_FALSE(half.image.isNull()) << format;
        EXPECT_NE(half.fault, worker::Fault::none) << format;
        EXPECT_GT(half.percent, 20) << format;
        EXPECT_LT(half.percent, 80) << format;
        if (half.image.isNull()) continue;
        EXPECT_EQ(qAlpha(half.image.pixel(32, format == "bmp"sv ? 63 : 0)), 255) << format;
    }
}

TEST(Decoder, ShowsColorsAsTheProfileOfTheFileMeansThem) {
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(qRgb(100, 150, 200));
    for (const char* format : {"png", "jpg"}) {
        std::vector<QRgb> pixels;
        for (const auto space : {QColorSpace::SRgb, QColorSpace::AdobeRgb}) {
            image.setColorSpace(space);
            QBuffer buffer;
            QImageWriter writer(&buffer, format);
            writer.setQuality(100);
            writer.write(image);
            for (const bool keeps : {true, false}) {
                pixels.push_back(Decoder().decode(buffer.data().toStdString(), {{}, 0, 0, keeps}).image.pixel(4, 4));
            }
        }
        EXPECT_EQ(pixels[1], pixels[0]) << format;
        EXPECT_EQ(pixels[2], pixels[0]) << format;
        EXPECT_LT(qRed(pixels[3]), qRed(pixels[0]) - 5) << format;
    }
}

TEST(Decoder, GoesThroughAnAnimationFrameByFrame) {
    const std::string frame = "!\xF9\4\0\x0A\0\0\0,\0\0\0\0\1\0\1\0\0\2\2\x44\1\0"s;
    const std::string gif = "GIF89a\1\0\1\0\x80\0\0\0\0\0\xFF\xFF\xFF"s + frame + frame + frame + ";";
    Decoder decoder;
    for (const unsigned index : {0U, 1U, 2U, 1U}) {
        const Decoded decoded = decoder.decode(gif, {{}, index, 7});
        EXPECT_FALSE(decoded.image.isNull()) << index;
        EXPECT_TRUE(decoded.animated);
        EXPECT_EQ(decoded.count, 3U);
        EXPECT_EQ(decoded.delay, 100);
    }
    EXPECT_EQ(decoder.decode(gif, {{}, 3, 7}).image, QImage());
}

TEST(Reading, BoundsTheMemoryByWhatTheHeaderStates) {
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
        {"wide and high", png_of(12'000, 12'000), false},
        {"deep", png_of(8000, 8000, deep), false},
        {"all height", png_of(1, 900'000), false},
        {"all width", png_of(900'000, 1), false},
        {"as far as the format goes", png_of(0x7FFFFFFF, 0x7FFFFFFF), false},
        {"nothing", png_of(0, 0), false},
        {"in an icon", icon_of(png_of(12'000, 12'000)), false},
        {"an animation", gif, false},
        {"an icon's bitmap", icon_of(bitmap), false},
        {"a drawing", R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"/>)", false},
    };
    for (const Case& each : cases) {
        QByteArray content = plain_picture(each.bytes);
        QBuffer buffer(&content);
        const auto memory = picture_memory(QImageReader(&buffer));
        EXPECT_EQ(memory && *memory <= most_picture_memory, each.read) << each.what;
    }
}

TEST(Reading, LeavesTextInPngPackedUp) {
    const std::string text = chunk("zTXt", std::string("k\0\0", 3) + std::string(5000, 'x'));
    const std::string palette = chunk("PLTE", "\1\2\3");
    const std::string png = png_of(2, 2, "\x08\x03", text + palette + text);
    for (const std::string& whole : {png, icon_of(png)}) {
        EXPECT_EQ(plain_picture(whole).toStdString(), png_of(2, 2, "\x08\x03", palette));
        for (std::size_t length = 0; length < whole.size(); length += 7) {
            EXPECT_LE(plain_picture(std::string_view(whole).substr(0, length)).size(), static_cast<qsizetype>(length));
        }
    }
}

}  // namespace
}  // namespace quill::picture
