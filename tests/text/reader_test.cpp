#include "text/reader.h"

#include "text/writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace quill::text {
namespace {

using Strings = std::vector<std::string>;

Strings lines_of(std::string_view bytes) {
    Strings out;
    Reader reader(bytes);
    while (const auto line = reader.line()) out.emplace_back(*line);
    return out;
}

Strings fields_of(std::string_view bytes) {
    Strings out;
    Reader reader(bytes);
    while (const auto field = reader.field()) out.emplace_back(*field);
    return out;
}

struct Case {
    const char* text;
    Strings lines;
    Strings fields;
};

TEST(Reader, LinesAndFieldsDifferOnTheSameText) {
    const std::vector<Case> cases = {
        {"", {}, {}},
        {"a", {"a"}, {"a"}},
        {"a\r\n", {"a"}, {"a"}},
        {"a\rb\r\nc", {"a", "b", "c"}, {"a", "b", "c"}},
        {"\r\n\r\n", {"", ""}, {"", ""}},
        {"a,b,c\r\n", {"a,b,c"}, {"a", "b", "c"}},
        {"a,,b,\r\n", {"a,,b,"}, {"a", "", "b", ""}},
        {"  \ta b \r\n", {"  \ta b "}, {"a b "}},
        {"a\nb\rc", {"a\nb", "c"}, {"a\nb", "c"}},                  // a lone LF is a character if there is a CR
        {"a\nb\n\nc\n", {"a", "b", "", "c"}, {"a", "b", "", "c"}},  // but not in Unix text
        {"\"a, b\" junk,c\r\nd", {"\"a, b\" junk,c", "d"}, {"a, b", "c", "d"}},
        {"\"a\r\nb\"\r\nc", {"\"a", "b\"", "c"}, {"a\r\nb", "c"}},  // quotes extend over line ends
        {"\"open, to\r\nthe end", {"\"open, to", "the end"}, {"open, to\r\nthe end"}},
        {"a\"b,c\"\r\n", {"a\"b,c\""}, {"a\"b", "c\""}},  // a quote further in is a character
        {"\"\",x", {"\"\",x"}, {"", "x"}},
        {"a,\r\n  ", {"a,", "  "}, {"a", "", ""}},
        {"\x80\xFF,\xE9\r\n", {"\x80\xFF,\xE9"}, {"\x80\xFF", "\xE9"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(lines_of(c.text), c.lines) << c.text;
        EXPECT_EQ(fields_of(c.text), c.fields) << c.text;
    }
}

TEST(Reader, LinesAndFieldsMayBeMixed) {
    Reader reader("a,b\r\nc,d\r\ne");
    EXPECT_EQ(reader.field(), "a");
    EXPECT_EQ(reader.line(), "b");
    EXPECT_EQ(reader.offset(), 5U);
    EXPECT_EQ(reader.field(), "c");
    EXPECT_EQ(reader.field(), "d");
    EXPECT_FALSE(reader.at_end());
    EXPECT_EQ(reader.line(), "e");
    EXPECT_TRUE(reader.at_end());
    EXPECT_EQ(reader.field(), std::nullopt);
}

TEST(Reader, TakesTheCallersWordOnUnixText) {
    Reader part("a\nb", false);
    EXPECT_EQ(part.line(), "a\nb");
    Reader whole("a\rb\n", true);
    EXPECT_EQ(whole.line(), "a\rb");
}

/// A reader that follows the rules literally, one character at a time.
class SlowReader {
  public:
    explicit SlowReader(std::string_view bytes) : rest_(bytes), end_(is_unix_text(bytes) ? '\n' : '\r') {}

    std::optional<std::string> line() {
        if (rest_.empty()) return std::nullopt;
        std::string out;
        while (!rest_.empty() && rest_[0] != end_) out += take();
        pass();
        return out;
    }
    std::optional<std::string> field() {
        if (rest_.empty()) return std::nullopt;
        while (!rest_.empty() && (rest_[0] == ' ' || rest_[0] == '\t')) take();
        std::string out;
        if (!rest_.empty() && rest_[0] == '"') {
            take();
            while (!rest_.empty() && rest_[0] != '"') out += take();
            while (!at_delimiter()) take();
        } else
            while (!at_delimiter()) out += take();
        pass();
        return out;
    }

  private:
    bool at_delimiter() const { return rest_.empty() || rest_[0] == end_ || rest_[0] == ','; }
    char take() {
        const char c = rest_[0];
        rest_.remove_prefix(1);
        return c;
    }
    void pass() {
        if (rest_.empty()) return;
        if (take() == '\r' && !rest_.empty() && rest_[0] == '\n') take();
    }

    std::string_view rest_;
    char end_;
};

TEST(Reader, AgreesWithTheSlowReaderOnRandomTexts) {
    std::minstd_rand random(7);
    for (int round = 0; round < 4000; ++round) {
        constexpr std::string_view alphabet = "ab,\"\r\n \t";
        std::string bytes;
        for (std::size_t n = random() % 40; n > 0; --n) bytes += alphabet[random() % alphabet.size()];
        if (round % 3 == 0) std::erase(bytes, '\r');
        Reader fast(bytes);
        SlowReader slow(bytes);
        for (;;) {
            const bool by_line = random() % 2 == 0;
            const auto got = by_line ? fast.line() : fast.field();
            const auto wanted = by_line ? slow.line() : slow.field();
            ASSERT_EQ(got.has_value(), wanted.has_value()) << testing::PrintToString(bytes);
            if (!got) break;
            ASSERT_EQ(*got, *wanted) << testing::PrintToString(bytes);
        }
    }
}

TEST(Reader, TakesTimeInProportionToTheTextOnOneLineOfManyFields) {
    const std::string bytes(1'000'000, ',');
    EXPECT_EQ(fields_of(bytes).size(), bytes.size());
}

TEST(Writer, EndsALineWithBothCharacters) {
    std::string out = "a";
    append_line(out, "b");
    append_line(out, "");
    EXPECT_EQ(out, "ab\r\n\r\n");
}

TEST(Reader, ALongSearchTellsHowFarItHasCome) {
    const std::string text = std::string(5'000'000, 'a') + "\r\nb";
    std::vector<std::size_t> passed;
    Reader reader(Source(text, false, [&](std::size_t offset) { passed.push_back(offset); }));
    EXPECT_EQ(reader.line()->size(), 5'000'000U);
    ASSERT_FALSE(passed.empty());
    EXPECT_TRUE(std::is_sorted(passed.begin(), passed.end()));
    EXPECT_LE(passed.back(), 5'000'000U);
    EXPECT_EQ(reader.line(), "b");
}

}  // namespace
}  // namespace quill::text
