#include "text/utf8.h"

#include "text/ascii.h"

#include <gtest/gtest.h>

#include <string>

namespace quill::text {
namespace {

TEST(Utf8, IsToldFromWhatOnlyLooksLikeIt) {
    for (const char* good :
         {"", "plain", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xEF\xBF\xBF", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(is_utf8(good)) << testing::PrintToString(good);
    }
    const char* const bad[] = {
        "\x80",              // continuation without a beginning
        "\xC3",              // cut off
        "\xE2\x82",          // cut off
        "\xC3(",             // no continuation
        "\xC0\xAF",          // overlong '/'
        "\xE0\x80\xAF",      // overlong '/'
        "\xF0\x80\x80\xAF",  // overlong '/'
        "\xED\xA0\x80",      // surrogate
        "\xF4\x90\x80\x80",  // beyond U+10FFFF
        "\xF5\x80\x80\x80",
        "\xFF",
        "gr\xFC\xDF",  // Windows-1252
    };
    for (const char* text : bad) EXPECT_FALSE(is_utf8(text)) << testing::PrintToString(text);
}

TEST(Utf8, OtherBytesAreReadAsWindows1252) {
    EXPECT_EQ(to_utf8("gr\xFC\xDF \x80 \x93quoted\x94"),
              "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xE2\x80\x9Cquoted\xE2\x80\x9D");
    EXPECT_EQ(to_utf8("\xC3\xA4"), "\xC3\xA4");
    EXPECT_EQ(windows_1252_to_utf8("\x81"), "\xC2\x81");
    std::string all;
    for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
    EXPECT_TRUE(is_utf8(windows_1252_to_utf8(all)));
}

TEST(Utf8, EveryCharacterComesBack) {
    for (char32_t c = 0; c <= 0x10FFFF; c += c < 0x900 ? 1 : 97) {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        std::string bytes;
        append_utf8(bytes, c);
        ASSERT_TRUE(is_utf8(bytes)) << static_cast<unsigned>(c);
        std::string_view rest = bytes;
        ASSERT_EQ(next_character(rest), c);
        ASSERT_TRUE(rest.empty());
    }
}

TEST(Ascii, KnowsTheLettersAToZAlone) {
    EXPECT_EQ(to_lower("AbZ[\xC4"), "abz[\xC4");
    EXPECT_TRUE(equal_ignoring_case("a.ZIP", "A.zip"));
    EXPECT_FALSE(equal_ignoring_case("a", "ab"));
    EXPECT_FALSE(equal_ignoring_case("\xE4", "\xC4"));
    EXPECT_TRUE(starts_with_ignoring_case("Content-X", "content"));
    EXPECT_FALSE(starts_with_ignoring_case("con", "content"));
    EXPECT_TRUE(ends_with_ignoring_case("a.JPG", ".jpg"));
    EXPECT_FALSE(ends_with_ignoring_case("jpg", ".jpg"));
    EXPECT_EQ(last("abcd", 3), "bcd");
    EXPECT_EQ(last("ab", 3), "ab");
    EXPECT_EQ(trim(" \ta b\t "), "a b");
    EXPECT_EQ(trim(" \t"), "");
}

}  // namespace
}  // namespace quill::text
