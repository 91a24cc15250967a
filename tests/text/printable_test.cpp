#include "text/printable.h"

#include "text/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace quill::text {
namespace {

TEST(Printable, WhatActsOnATerminalOrOnTheTextAroundItIsAQuestionMark) {
    const char32_t controls[] = {0x00,   0x09,   0x0A,   0x1B,   0x1F,   0x7F,   0x80,   0x85,    0x9B,   0x9F,
                                 0x061C, 0x200E, 0x200F, 0x2028, 0x2029, 0x202A, 0x202B, 0x202C,  0x202D, 0x202E,
                                 0x2066, 0x2067, 0x2068, 0x2069, 0x2060, 0x206F, 0xFEFF, 0xE0061, 0xE007F};
    for (const char32_t c : controls) {
        std::string text = "a";
        append_utf8(text, c);
        EXPECT_EQ(printable(text + "b"), "a?b") << std::hex << static_cast<unsigned>(c);
    }
}

TEST(Printable, WordsInAnyScriptStay) {
    const char* const words[] = {
        "",
        "tide table.txt",
        "gr\xC3\xBC\xC3\x9F",
        "\xC2\xA0",                                      // U+00A0, the first above C1
        "\xD8\xB3\xD9\x84\xD8\xA7\xD9\x85",              // Arabic needs no marks of direction
        "\xD9\x85\xDB\x8C\xE2\x80\x8C\xD8\xAE",          // a non-joiner inside a Persian word
        "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7",  // an emoji of two, joined
        "\xEF\xBF\xBD\xE2\x80\x94\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF",
    };
    for (const char* text : words) EXPECT_EQ(printable(text), text);
}

TEST(Printable, EachByteThatIsNotUtf8IsAQuestionMark) {
    EXPECT_EQ(printable("gr\xFC\x9B"), "gr??");  // a raw C1 byte steers 8-bit terminals
    EXPECT_EQ(printable("\xC2"), "?");           // cut off
    EXPECT_EQ(printable("\xE2\x82x"), "??x");
    EXPECT_EQ(printable("\xC0\x9B\xED\xA0\x80"), "?????");  // overlong, surrogate
}

}  // namespace
}  // namespace quill::text
