#include "codec/kernel_targets.h"
#include "codec/uu/alphabets.h"
#include "codec/uu/uu.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace quill::codec::uu {
namespace {

using test::ExactBytes;
using test::most_bytes;
using test::on_each_target;
using test::Random;

constexpr Alphabet alphabets[] = {Alphabet::uu, Alphabet::xx};

struct Decoded {
    Progress progress;
    std::string bytes;

    bool operator==(const Decoded&) const = default;
};

template <class Decode>
Decoded run(Decode decode, Alphabet alphabet, std::string_view text, std::size_t offset) {
    ExactBytes in(text, offset);
    ExactBytes out(decoded_bound(text.size()), offset);
    const Progress progress = decode(alphabet, in.view(), out.data());
    return {progress, std::string(out.view(progress.written))};
}

void expect_same(Alphabet alphabet, std::string_view text, std::size_t offset = 0) {
    const Decoded found = run(decode_lines, alphabet, text, offset);
    const Decoded expected = run(decode_lines_reference, alphabet, text, offset);
    ASSERT_EQ(found.progress.read, expected.progress.read) << text;
    ASSERT_EQ(found, expected) << text;
}

/// Returns a canonical line for `n` bytes.
std::string line_for(Alphabet alphabet, unsigned n, std::string_view line_end, Random& random) {
    const std::string_view characters = alphabet == Alphabet::uu ? uu_characters : xx_characters;
    std::string line(1, character_for(alphabet, n));
    return line.append(random.text((n + 2) / 3 * 4, characters)).append(line_end);
}

TEST(UuKernel, DecodesLinesOfEveryLengthAsItsReference) {
    on_each_target([] {
        Random random(11);
        for (const Alphabet alphabet : alphabets) {
            for (unsigned n = 0; n < 64; ++n) {
                std::string text;
                for (int i = 0; i < 4; ++i) text += line_for(alphabet, n, i % 2 == 0 ? "\n" : "\r\n", random);
                for (const std::size_t offset : test::offsets) expect_same(alphabet, text, offset);
                expect_same(alphabet, text + line_for(alphabet, 45, "", random));
                // Lines with one character too many or too few.
                expect_same(alphabet, text + line_for(alphabet, 45, "x\n", random) + text);
                expect_same(alphabet, text + line_for(alphabet, 45, "\n", random).erase(7, 1) + text);
            }
        }
    });
}

TEST(UuKernel, DecodesEveryBeginningOfATextAsItsReference) {
    on_each_target([] {
        Random random(12);
        std::string text;
        for (unsigned i = 0; i < 8; ++i) text += line_for(Alphabet::uu, i == 3 ? 20 : 45, "\r\n", random);
        for (std::size_t n = 0; n <= text.size(); ++n) expect_same(Alphabet::uu, text.substr(0, n), n % 5);
    });
}

TEST(UuKernel, StopsAtLinesWithForeignBytes) {
    on_each_target([] {
        Random random(13);
        for (const Alphabet alphabet : alphabets) {
            std::string text;
            for (int i = 0; i < 5; ++i) text += line_for(alphabet, 45, "\n", random);
            for (const char c : test::all_bytes()) {
                std::string changed = text;
                changed[63 + 30] = c;
                expect_same(alphabet, changed);
            }
            for (std::size_t at = 0; at < text.size(); ++at) {
                for (const char c : {'\x1F', '\x80', '\r', ' '}) {
                    std::string changed = text;
                    changed[at] = c;
                    expect_same(alphabet, changed);
                }
            }
        }
    });
}

TEST(UuKernel, EncodesAsItsReference) {
    on_each_target([] {
        Random random(14);
        const std::string data = random.bytes(2 * most_bytes);
        for (const Alphabet alphabet : alphabets) {
            for (std::size_t n = 0; n <= data.size(); ++n) {
                ExactBytes in(std::string_view(data).substr(0, n), n % 32);
                ExactBytes out(encoded_size(n), n % 7);
                ExactBytes expected(encoded_size(n), 0);
                ASSERT_EQ(encode_lines(alphabet, in.view(), out.data()), out.view().size());
                ASSERT_EQ(encode_lines_reference(alphabet, in.view(), expected.data()), out.view().size());
                ASSERT_EQ(out.view(), expected.view()) << n;
            }
        }
    });
}

/// As uuencode and xxencode print them.
TEST(Uu, KnowsLinesOfOtherPrograms) {
    const std::tuple<Alphabet, std::string_view, std::string_view> lines[] = {
        {Alphabet::uu, "Cat", "#0V%T\r\n"},
        {Alphabet::uu, "http://www.wikipedia.org\r\n", "::'1T<#HO+W=W=RYW:6MI<&5D:6$N;W)G#0H`\r\n"},
        {Alphabet::uu, std::string_view("\0\0", 2), "\"````\r\n"},
        {Alphabet::xx, "Cat", "1Eq3o\r\n"},
    };
    for (const auto& [alphabet, plain, encoded] : lines) {
        std::string out(encoded_size(plain.size()), '\0');
        EXPECT_EQ(encode_lines(alphabet, plain, out.data()), out.size());
        EXPECT_EQ(out, encoded);
        EXPECT_EQ(run(decode_lines, alphabet, encoded, 0).bytes, plain);
    }
}

TEST(Uu, ReadsBlanksAsZero) {
    EXPECT_EQ(run(decode_lines, Alphabet::uu, "\"    \n", 0).bytes, std::string(2, '\0'));
    EXPECT_EQ(run(decode_lines, Alphabet::uu, "`\nend\n", 0).progress, (Progress{0, 0}));
}

}  // namespace
}  // namespace quill::codec::uu
