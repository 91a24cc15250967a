#include "cli/json.h"

#include <gtest/gtest.h>

#include <string_view>

namespace quill::cli {
namespace {

TEST(JsonString, EscapesWhatJsonCannotHoldAndKeepsEveryByteApart) {
    const struct {
        std::string_view text;
        std::string_view json;
    } table[] = {
        {"plain.png", R"("plain.png")"},
        {"a\"b\\c/d", R"("a\"b\\c/d")"},
        {"tab\tline\nreturn\r\x1b", R"("tab\tline\nreturn\u000d\u001b")"},
        {std::string_view("nul\0in", 6), R"("nul\u0000in")"},
        {"gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80", "\"gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80\""},
        {"gr\xFC\xDF", R"("gr\udcfc\udcdf")"},
        {"cut \xF0\x9F", R"("cut \udcf0\udc9f")"},
        {"surrogate \xED\xA0\x80", R"("surrogate \udced\udca0\udc80")"},
        {"c1 \xC2\x9B, bidi \xE2\x80\xAE, tag \xF3\xA0\x81\xA1", R"("c1 \u009b, bidi \u202e, tag \udb40\udc61")"},
        {"", R"("")"},
    };
    for (const auto& row : table) EXPECT_EQ(json_string(row.text), row.json);
}

}  // namespace
}  // namespace quill::cli
