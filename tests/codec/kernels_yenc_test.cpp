#include "codec/kernel_targets.h"
#include "codec/yenc/yenc.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace quill::codec::yenc {
namespace {

using test::ExactBytes;
using test::most_bytes;
using test::on_each_target;
using test::Random;

constexpr Rules all_rules[] = {Rules::plain, Rules::dotted, Rules::draft, Rules::draft_dotted};

struct Decoded {
    Progress progress;
    std::string bytes;

    bool operator==(const Decoded&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Decoded& d) {
    return out << d.progress.read << " read, " << d.progress.written << " written, ended " << d.progress.ended;
}

template <class Decode>
Decoded run(Decode decode, Rules rules, std::string_view text, unsigned char previous, bool last,
            std::size_t offset = 0) {
    ExactBytes in(text, offset);
    ExactBytes out(decoded_bound(text.size()), offset);
    const Progress progress = decode(rules, in.view(), previous, last, out.data());
    return {progress, std::string(out.view(progress.written))};
}

void expect_same(std::string_view text, std::size_t offset = 0, unsigned char previous = '\n') {
    for (const Rules rules : all_rules) {
        for (const bool last : {false, true}) {
            ASSERT_EQ(run(decode, rules, text, previous, last, offset),
                      run(decode_reference, rules, text, previous, last, offset))
                << "rules " << static_cast<int>(rules) << ", length " << text.size() << ", last " << last << ": "
                << testing::PrintToString(std::string(text));
        }
    }
}

/// Returns random bytes in the form that an encoder gives them.
std::string encoded(Random& random, std::size_t n) {
    Column column;
    std::string out(encoded_bound(n, 128), '\0');
    out.resize(encode_reference(random.bytes(n), 128, column, out.data()));
    return out;
}

TEST(YencKernel, DecodesEveryLengthAndAlignmentAsItsReference) {
    on_each_target([] {
        Random random(21);
        const std::string text = encoded(random, 2 * most_bytes);
        for (std::size_t n = 0; n <= most_bytes; ++n) expect_same(text.substr(n, n), test::offsets[n % 4]);
        for (std::size_t n = 0; n <= most_bytes; ++n) expect_same(text.substr(0, n), test::offsets[n / 4 % 4]);
    });
}

/// Everything that a rule examines, at every place of a block and across two.
TEST(YencKernel, MeetsOddPiecesAtEachPosition) {
    constexpr std::string_view pieces[] = {
        "\r\n",     "\r",    "\n",        "\r\r\n",     "  \r\n", "   \r\n",  " \r\n",   "  \r",      "=  \r\n",
        "=\r\n",    "=\n..", "\r\n..",    "\n..",       "\r..",   "\n...",    "==",      "=====",     "===y",
        "=y",       "=ye",   "=yen",      "\r\n=yend ", "\r=y",   "==yen",    "=\r\n=y", "\r\n=\r\n", "\n.=yend",
        "=\r\n..x", "=.",    "  \r\n=y1", "=y=y",       "=yy",    " =  \r\n", "    ",    "....",      "\r\n\r\n"};
    on_each_target([&] {
        Random random(22);
        for (const std::string_view piece : pieces) {
            for (std::size_t at = 0; at < 150; ++at) {
                std::string text = random.text(190, "abcdefgh*+,-~\x80\xFF");
                text.insert(at, piece);
                expect_same(text, 0, at % 2 == 0 ? '=' : '\n');
                for (const std::size_t behind : {0U, 1U}) expect_same(text.substr(0, at + piece.size() + behind));
            }
        }
    });
}

TEST(YencKernel, DecodesRandomOddTextsAsItsReference) {
    on_each_target([] {
        Random random(23);
        for (int round = 0; round < 600; ++round) {
            // From texts of only unusual pieces to nearly proper ones.
            std::string text = random.text(random.below(700), "=\r\n .yenab");
            const std::size_t share = random.below(60);
            for (char& c : text) c = random.below(60) < share ? random.byte() : c;
            expect_same(text, random.below(64));
        }
    });
}

TEST(YencKernel, CanBeInterruptedAnywhere) {
    on_each_target([] {
        Random random(24);
        std::string text = encoded(random, 300);
        text.insert(100, "\r\n..=}  \r\n=yx==");
        for (const Rules rules : all_rules) {
            const Decoded whole = run(decode_reference, rules, text, '\n', true);
            for (std::size_t cut = 0; cut <= text.size(); ++cut) {
                const Decoded head = run(decode, rules, text.substr(0, cut), '\n', false);
                const std::size_t at = head.progress.read;
                const unsigned char before = at == 0 ? '\n' : static_cast<unsigned char>(text[at - 1]);
                const Decoded tail = run(decode, rules, text.substr(at), before, true);
                ASSERT_EQ(head.bytes + tail.bytes, whole.bytes) << cut;
            }
        }
    });
}

void expect_same_encoding(std::string_view data, std::size_t line_length, std::size_t begun, std::size_t offset) {
    ExactBytes in(data, offset);
    ExactBytes out(encoded_bound(data.size(), line_length), offset);
    ExactBytes expected(encoded_bound(data.size(), line_length), 0);
    Column column{begun};
    Column expected_column{begun};
    const std::size_t n = encode(in.view(), line_length, column, out.data());
    const std::size_t expected_n = encode_reference(in.view(), line_length, expected_column, expected.data());
    ASSERT_EQ(out.view(n), expected.view(expected_n)) << data.size() << " bytes, lines of " << line_length;
    ASSERT_EQ(column.characters, expected_column.characters);
}

TEST(YencKernel, EncodesAsItsReference) {
    on_each_target([] {
        Random random(25);
        const std::string data = random.bytes(2 * most_bytes);
        const std::string critical = random.text(2 * most_bytes, "\xD6\xE0\xE3\x13");
        std::string mixed = data;
        for (char& c : mixed) c = random.below(2) == 0 ? random.one_of(critical) : c;
        for (const std::size_t line_length : {1U, 2U, 63U, 64U, 65U, 127U, 128U, 129U, 1000U}) {
            for (std::size_t n = 0; n <= data.size(); n += 1 + n / 16) {
                const std::size_t begun = n * 31 % line_length;
                for (const std::string_view from : {data, critical, mixed}) {
                    expect_same_encoding(from.substr(0, n), line_length, begun, test::offsets[n % 4]);
                }
            }
        }
        expect_same_encoding(data, 100, 200, 0);
    });
}

/// The examples of the yEnc draft's rule: value + 42, and 64 more after '='.
TEST(Yenc, KnowsItsEscapes) {
    const auto decoded = [](std::string_view text, Rules rules = Rules::plain) {
        return run(decode, rules, text, '\n', true).bytes;
    };
    EXPECT_EQ(decoded("=@=J=M=}"), "\xD6\xE0\xE3\x13");
    EXPECT_EQ(decoded("*)"), std::string("\0\xFF", 2));
    EXPECT_EQ(decoded("ab\r\ncd"), "\x37\x38\x39\x3A");
    EXPECT_EQ(decoded("a\rb\nc"), "\x37\xE3\x38\xE0\x39");
    EXPECT_EQ(decoded("a\rb\nc", Rules::draft), "\x37\x38\x39");
    EXPECT_EQ(decoded("a  \r\nb "), "\x37\x38\xF6");
    EXPECT_EQ(decoded("..a\r\n..\r\n..."), "\x04\x04\x37\x04\x04\x04\x04\x04");
    EXPECT_EQ(decoded("..a\r\n..\r\n...", Rules::dotted), "\x04\x37\x04\x04\x04");
    EXPECT_EQ(decoded("=yx"), "\x4F\x4F\x4E");
    EXPECT_EQ(decoded("a="), "\x37");
}

TEST(Yenc, EndsAtTheTrailer) {
    const std::string_view text = "abc=yend size=3";
    EXPECT_EQ(run(decode, Rules::plain, text, '\n', true).progress, (Progress{3, 3, true}));
    EXPECT_FALSE(run(decode, Rules::draft, text, '\n', true).progress.ended);
    EXPECT_EQ(run(decode, Rules::draft, "abc\r\n=yend size=3", '\n', true).progress, (Progress{5, 3, true}));
}

TEST(Yenc, BreaksALineBehindAnEscapedPair) {
    const auto lines = [](std::string_view data, std::size_t line_length) {
        Column column;
        std::string out(encoded_bound(data.size(), line_length), '\0');
        out.resize(encode(data, line_length, column, out.data()));
        return out;
    };
    EXPECT_EQ(lines(std::string(3, '\0') + "\x13" + std::string(2, '\0'), 4), "***=}\r\n**");
    EXPECT_EQ(lines(std::string(4, '\0'), 4), "****\r\n");
}

}  // namespace
}  // namespace quill::codec::yenc
