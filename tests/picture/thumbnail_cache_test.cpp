#include "thumbnails/thumbnail_cache.h"

#include "picture/decoder.h"
#include "support/fake_pictures.h"
#include "thumbnails/png_file.h"

#include <gtest/gtest.h>

namespace quill::thumbnails {
namespace {

TEST(Addresses, AreThoseOfFileManagers) {
    EXPECT_EQ(address_of("/a b/~c-d_e.f"), "file:///a%20b/~c-d_e.f");
    EXPECT_EQ(address_of("/100%;[x]\xC3\xA9!$&'()*+,:=@"), "file:///100%25%3B%5Bx%5D%C3%A9!$&'()*+,:=@");
}

TEST(PngFiles, HaveThePixelsWithTheirAlphaAndTheTexts) {
    const std::string png = png_of(tests::plain_picture(3, 2, 0x80402000).pixels, {{"A", "one"}, {"B", ""}});
    const picture::Decoded decoded = picture::Decoder().decode(png, {});
    ASSERT_EQ(decoded.image.size(), QSize(3, 2));
    EXPECT_EQ(decoded.percent, 100);
    EXPECT_EQ(*reinterpret_cast<const QRgb*>(decoded.image.constBits()), 0x80402000U);
    EXPECT_EQ(text_in(png, "A"), "one");
    EXPECT_EQ(text_in(png, "B"), "");
    EXPECT_EQ(text_in(png, "C"), std::nullopt);
    for (std::size_t size = 0; size < png.size(); ++size) text_in(png.substr(0, size), "B");
    std::string endless = png;
    endless[8] = endless[9] = '\xFF';
    EXPECT_EQ(text_in(endless, "A"), std::nullopt);
}

}  // namespace
}  // namespace quill::thumbnails
