#include "picture/bmp.h"
#include "picture/decoder.h"
#include "picture/pbm.h"
#include "picture/tga.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quill::picture {
namespace {

using namespace std::literals;

constexpr QRgb red = 0xFFFF0000, green = 0xFF00FF00, blue = 0xFF0000FF, white = 0xFFFFFFFF, black = 0xFF000000;
constexpr qint64 most = 1 << 20;

std::string word(unsigned value) {
    return {static_cast<char>(value & 0xFFU), static_cast<char>(value >> 8U)};
}

std::string number(std::uint32_t value) {
    return word(value & 0xFFFFU) + word(value >> 16U);
}

std::vector<QRgb> pixels_of(const QImage& image) {
    std::vector<QRgb> pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) pixels.push_back(image.pixel(x, y));
    }
    return pixels;
}

/// Returns a TGA file of 2 by 2 pixels.
std::string tga(unsigned type, unsigned bits, unsigned descriptor, const std::string& map, std::string_view data) {
    const bool has_map = !map.empty();
    return std::string(1, '\2') + (has_map ? '\1' : '\0') + static_cast<char>(type) + word(0) +
           word(has_map ? static_cast<unsigned>(map.size() / 3) : 0) + (has_map ? '\x18' : '\0') + word(0) + word(0) +
           word(2) + word(2) + static_cast<char>(bits) + static_cast<char>(descriptor) + "id" + map + std::string(data);
}

TEST(Tga, ReadsEveryTypeFromEveryCorner) {
    const std::string map = "\0\0\xFF\0\xFF\0\xFF\0\0"s;  // red, green, blue
    const std::string four = "\0\0\xFF\0\xFF\0\xFF\0\0\xFF\xFF\xFF"s;
    struct Case {
        const char* what;
        std::string file;
        std::vector<QRgb> pixels;
    };
    const Case cases[] = {
        {"colors", tga(2, 24, 0x20, "", four), {red, green, blue, white}},
        {"from the bottom", tga(2, 24, 0, "", four), {blue, white, red, green}},
        {"from the right", tga(2, 24, 0x30, "", four), {green, red, white, blue}},
        {"with a palette that is not used", tga(2, 24, 0x20, map, four), {red, green, blue, white}},
        {"palette", tga(1, 8, 0x20, map, "\0\1\2\7"sv), {red, green, blue, black}},
        {"greys", tga(3, 8, 0x20, "", "\0\x80\xFF\1"sv), {black, 0xFF808080, white, 0xFF010101}},
        {"15 bits", tga(2, 16, 0x20, "", "\0\x7C\xE0\x03\x1F\0\xFF\xFF"sv), {red, green, blue, white}},
        {"alpha", tga(2, 32, 0x28, "", "\0\0\xFF\xFF\0\0\xFF\0\0\xFF\0\x80\0\0\0\xFF"sv), {red, 0, 0x80008000, black}},
        {"alpha that hides all is none",
         tga(2, 32, 0x20, "", "\0\0\xFF\0\0\0\xFF\0\0\xFF\0\0\xFF\0\0\0"sv),
         {red, red, green, blue}},
        {"a run over the end of a row", tga(10, 24, 0x20, "", "\x82\0\0\xFF\0\xFF\0\0"sv), {red, red, red, blue}},
        {"packed palette", tga(9, 8, 0x20, map, "\1\1\2\x81\0"sv), {green, blue, red, red}},
        {"packed greys", tga(11, 8, 0x20, "", "\x83\xFF"sv), {white, white, white, white}},
    };
    for (const Case& each : cases) {
        ASSERT_TRUE(is_tga(each.file)) << each.what;
        const Drawn drawn = draw_tga(each.file, most);
        EXPECT_EQ(pixels_of(drawn.image), each.pixels) << each.what;
        EXPECT_EQ(drawn.percent, 100) << each.what;
    }
    EXPECT_FALSE(is_tga(tga(2, 24, 0x20, "", "").substr(0, 18)));
    EXPECT_FALSE(is_tga("\0\0\2\0\1\0\2\2\0\0\1\0\1\0\x30\0\0\0\x16\0\0\0"s)) << "a cursor";
}

/// Returns a bitmap file of 2 by 2 pixels. `more` holds the header beyond 40 bytes, and the masks.
std::string bmp(unsigned bits, unsigned compression, int height, const std::string& more, const std::string& palette,
                std::string_view data, unsigned header = 40) {
    const std::string head = number(header) + number(2) + number(static_cast<std::uint32_t>(height)) + word(1) +
                             word(bits) + number(compression) + std::string(20, '\0') + more;
    const auto begin = static_cast<std::uint32_t>(14 + head.size() + palette.size());
    return "BM" + number(0) + number(0) + number(begin) + head + palette + std::string(data);
}

TEST(Bmp, ReadsEveryDepthAndMask) {
    const std::string palette = "\0\0\xFF\0\0\xFF\0\0\xFF\0\0\0"s;  // red, green, blue
    const std::string rgb = number(0xFF0000) + number(0xFF00) + number(0xFF);
    const std::string deep = "\0\0\xFF\xFF\0\xFF\0\xFF\xFF\0\0\xFF\xFF\xFF\xFF\x00"s;
    struct Case {
        const char* what;
        std::string file;
        std::vector<QRgb> pixels;
    };
    const Case cases[] = {
        {"1 bit", bmp(1, 0, 2, "", palette, "\x40\0\0\0\x80\0\0\0"sv), {green, red, red, green}},
        {"4 bits, from the top", bmp(4, 0, -2, "", palette, "\1\0\0\0\x2F\0\0\0"sv), {red, green, blue, black}},
        {"16 bits", bmp(16, 0, -2, "", "", "\0\x7C\xE0\x03\x1F\0\xFF\x7F"sv), {red, green, blue, white}},
        {"16 bits with masks",
         bmp(16, 3, -2, number(0xF800) + number(0x7E0) + number(0x1F), "", "\0\xF8\xE0\x07\x1F\0\xFF\xFF"sv),
         {red, green, blue, white}},
        {"24 bits", bmp(24, 0, 2, "", "", "\0\0\xFF\0\xFF\0\0\0\xFF\0\0\xFF\xFF\xFF\0\0"sv), {blue, white, red, green}},
        {"32 bits without alpha", bmp(32, 0, -2, "", "", deep), {red, green, blue, white}},
        {"32 bits with alpha", bmp(32, 3, -2, rgb + number(0xFF000000), "", deep, 56), {red, green, blue, 0}},
        {"wide masks",
         bmp(32, 3, -2, number(0xFFFF0000) + number(0xFFFF) + number(0), "",
             "\0\0\xFF\xFF\xFF\xFF\0\0\0\0\0\0\0\x80\0\0"s),
         {red, green, black, 0xFF008000}},
        {"runs", bmp(8, 1, 2, "", palette, "\1\1\1\2\0\0\2\0\0\1"sv), {red, red, green, blue}},
        {"packed pixels of 4 bits", bmp(4, 2, 2, "", palette, "\2\x12\0\0\0\2\0\1"sv), {red, red, green, blue}},
    };
    for (const Case& each : cases) {
        const Drawn drawn = draw_bmp(each.file, most);
        EXPECT_EQ(pixels_of(drawn.image), each.pixels) << each.what;
        EXPECT_EQ(drawn.percent, 100) << each.what;
    }
    const std::string old = "BM"s + number(0) + number(0) + number(32) + number(12) + word(2) + word(1) + word(1) +
                            word(1) + "\xFF\0\0\0\0\xFF"s + std::string("\x40\0\0\0", 4);
    EXPECT_EQ(pixels_of(draw_bmp(old, most).image), (std::vector<QRgb>{blue, red}));
    for (const int height : {0, INT_MIN, 70'000}) EXPECT_FALSE(is_bmp(bmp(24, 0, height, "", "", ""))) << height;
}

TEST(Pbm, ReadsDigitsWithAndWithoutSpace) {
    for (const char* each : {"P1 2 2 1001", "P1\n# a comment\n2 2\n1 0\n0 1\n", "P1\t2\t2\t10#x\n01"}) {
        EXPECT_EQ(pixels_of(draw_plain_pbm(each, most).image), (std::vector<QRgb>{black, white, white, black})) << each;
    }
    EXPECT_EQ(draw_plain_pbm("P1 2 2 10", most).percent, 50);
    EXPECT_TRUE(draw_plain_pbm("P1 -2 2 1111", most).image.isNull());
}

TEST(OwnKinds, DamageNeverHarmsAndMissingRowsAreClear) {
    const std::string map = "\0\0\xFF\0\xFF\0\xFF\0\0"s;
    const std::string files[] = {
        tga(10, 24, 0x20, "", "\x82\0\0\xFF\0\xFF\0\0"sv),
        tga(9, 8, 0x20, map, "\1\1\2\x81\0"sv),
        bmp(8, 1, 2, "", map + "\0\0\0", "\1\1\1\2\0\0\2\0\0\1"sv),
        bmp(24, 0, -2, "", "", std::string(16, 'x')),
        "P1 2 2 1001",
        "\x0A\5\1\x08\0\0\0\0\1\0\1\0"s + std::string(53, '\0') + "\1\2\0"s + std::string(60, '\0') + "\xC4\1"s};
    for (const std::string& file : files) {
        for (std::size_t size = 0; size <= file.size(); ++size) {
            const Decoded decoded = Decoder().decode(file.substr(0, size), {{}, 0, 0});
            EXPECT_EQ(decoded.percent == 100, decoded.fault == worker::Fault::none);
        }
        for (std::size_t i = 0; i < file.size(); ++i) {
            for (const char byte : {'\0', '\x7F', '\x80', '\xFF'}) {
                std::string damaged = file;
                damaged[i] = byte;
                Decoder().decode(damaged, {{16, 16}, 0, 0});
            }
        }
    }
    const Drawn half = draw_bmp(bmp(24, 0, -2, "", "", std::string(8, 'x')), most);
    EXPECT_EQ(half.percent, 50);
    EXPECT_TRUE(half.cut);
    EXPECT_EQ(half.image.pixel(1, 1), 0U);
}

}  // namespace
}  // namespace quill::picture
