#include "codec/base64/sixbit.h"
#include "codec/kernel_targets.h"
#include "codec/uu/alphabets.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace quill::codec::sixbit {
namespace {

using test::ExactBytes;
using test::most_bytes;
using test::on_each_target;
using test::Random;

constexpr Alphabet alphabets[] = {Alphabet::base64, Alphabet::binhex};

std::string_view characters_of(Alphabet alphabet) {
    return alphabet == Alphabet::base64 ? base64_characters : binhex_characters;
}

/// Everything that a call returns.
struct Decoded {
    Progress progress;
    State state;
    std::string bytes;

    bool operator==(const Decoded&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Decoded& d) {
    return out << d.progress.read << " read, " << d.progress.written << " written, " << d.state.pending << " pending";
}

template <class Decode>
Decoded run(Decode decode, Alphabet alphabet, std::string_view text, State state, std::size_t offset) {
    ExactBytes in(text, offset);
    ExactBytes out(decoded_bound(text.size()), offset);
    const Progress progress = decode(alphabet, in.view(), out.data(), state);
    return {progress, state, std::string(out.view(progress.written))};
}

void expect_same(Alphabet alphabet, std::string_view text, State state = {}, std::size_t offset = 0) {
    ASSERT_EQ(run(decode, alphabet, text, state, offset), run(decode_reference, alphabet, text, state, offset))
        << "length " << text.size() << ", offset " << offset << ": " << text;
}

std::string lines_of(std::string_view text, std::size_t length, std::string_view line_end) {
    std::string result;
    for (; !text.empty(); text.remove_prefix(std::min(length, text.size()))) {
        result.append(text.substr(0, length)).append(line_end);
    }
    return result;
}

TEST(SixbitKernel, DecodesEveryLengthAndAlignmentAsItsReference) {
    on_each_target([] {
        Random random(1);
        for (const Alphabet alphabet : alphabets) {
            const std::string text = random.text(2 * most_bytes, characters_of(alphabet));
            const std::string lines = lines_of(text, 76, "\r\n");
            const std::string short_lines = lines_of(text, 5, " \t\n");
            for (std::size_t n = 0; n <= most_bytes; ++n) {
                const State state = n % 2 == 0 ? State{} : State{static_cast<std::uint32_t>(n % 64), 1};
                for (const std::size_t offset : test::offsets) {
                    expect_same(alphabet, std::string_view(text).substr(0, n), state, offset);
                    expect_same(alphabet, std::string_view(lines).substr(0, n), state, offset);
                    expect_same(alphabet, std::string_view(short_lines).substr(0, n), state, offset);
                }
            }
        }
    });
}

TEST(SixbitKernel, StopsAtEachForeignByteAtEachPosition) {
    on_each_target([] {
        Random random(2);
        for (const Alphabet alphabet : alphabets) {
            const std::string text = lines_of(random.text(150, characters_of(alphabet)), 60, "\r\n");
            for (const char c : test::all_bytes()) {
                std::string changed = text;
                changed[70] = c;
                expect_same(alphabet, changed);
            }
            for (std::size_t at = 0; at < text.size(); ++at) {
                std::string changed = text;
                changed[at] = '=';
                expect_same(alphabet, changed);
                changed[at] = '\x80';
                expect_same(alphabet, changed);
            }
        }
    });
}

TEST(SixbitKernel, CanBeInterruptedAnywhere) {
    on_each_target([] {
        Random random(3);
        const std::string text = lines_of(random.text(200, base64_characters), 76, "\r\n");
        const Decoded whole = run(decode_reference, Alphabet::base64, text, {}, 0);
        for (std::size_t cut = 0; cut <= text.size(); ++cut) {
            const Decoded head = run(decode, Alphabet::base64, text.substr(0, cut), {}, 0);
            const Decoded tail = run(decode, Alphabet::base64, text.substr(cut), head.state, 0);
            ASSERT_EQ(head.bytes + tail.bytes, whole.bytes) << cut;
            ASSERT_EQ(tail.state, whole.state) << cut;
        }
    });
}

TEST(SixbitKernel, DecodesLongOddTextsAsItsReference) {
    on_each_target([] {
        Random random(4);
        for (int round = 0; round < 200; ++round) {
            const Alphabet alphabet = alphabets[random.below(2)];
            // Lengths around the amount that the kernel holds back.
            std::string text = random.text(random.below(12'000), characters_of(alphabet));
            const std::size_t changes = random.below(2) * random.below(400);
            for (std::size_t i = 0; i < changes && !text.empty(); ++i) {
                text[random.below(text.size())] = random.one_of(" \t\r\n");
            }
            if (random.below(4) == 0 && !text.empty()) text[random.below(text.size())] = random.byte();
            expect_same(alphabet, text, State{static_cast<std::uint32_t>(random.below(1U << 18U)), 3},
                        random.below(64));
        }
    });
}

TEST(SixbitKernel, EncodesAsItsReference) {
    on_each_target([] {
        Random random(5);
        for (const std::size_t line_length : {0U, 4U, 8U, 60U, 64U, 76U, 128U, 1000U}) {
            const std::string data = random.bytes(3000);
            for (std::size_t n = 0; n <= data.size(); n += n < most_bytes ? 1 : 131) {
                for (const std::size_t offset : test::offsets) {
                    ExactBytes in(std::string_view(data).substr(0, n), offset);
                    ExactBytes out(encoded_size(n, line_length), offset);
                    ExactBytes expected(encoded_size(n, line_length), 0);
                    ASSERT_EQ(encode_base64(in.view(), line_length, out.data()), out.view().size());
                    ASSERT_EQ(encode_base64_reference(in.view(), line_length, expected.data()), out.view().size());
                    ASSERT_EQ(out.view(), expected.view()) << n << " bytes, lines of " << line_length;
                }
            }
        }
    });
}

TEST(SixbitKernel, EncodesGroupsAsItsReference) {
    on_each_target([] {
        const std::string data = Random(6).bytes(3 * most_bytes);
        for (const Alphabet alphabet : alphabets) {
            for (std::size_t n = 0; n <= data.size(); n += 3) {
                const ExactBytes in(std::string_view(data).substr(0, n), n % 32);
                ExactBytes out(n / 3 * 4, n % 7);
                ExactBytes expected(n / 3 * 4, 0);
                ASSERT_EQ(encode_groups(alphabet, in.view(), out.data()), n / 3 * 4);
                ASSERT_EQ(encode_groups_reference(alphabet, in.view(), expected.data()), n / 3 * 4);
                ASSERT_EQ(out.view(), expected.view()) << n;
            }
        }
    });
}

/// RFC 4648 10.
TEST(Sixbit, KnowsTheTestVectorsOfBase64) {
    const std::pair<std::string_view, std::string_view> vectors[] = {{"", ""},
                                                                     {"f", "Zg=="},
                                                                     {"fo", "Zm8="},
                                                                     {"foo", "Zm9v"},
                                                                     {"foob", "Zm9vYg=="},
                                                                     {"fooba", "Zm9vYmE="},
                                                                     {"foobar", "Zm9vYmFy"},
                                                                     {"\xFB\xFF\xBF", "+/+/"}};
    for (const auto& [plain, encoded] : vectors) {
        std::string out(encoded_size(plain.size(), 0), '\0');
        EXPECT_EQ(encode_base64(plain, 0, out.data()), encoded.size());
        EXPECT_EQ(out, encoded);
        Decoded decoded = run(decode, Alphabet::base64, encoded, {}, 0);
        char rest[2];
        decoded.bytes.append(rest, finish(rest, decoded.state));
        EXPECT_EQ(decoded.bytes, plain);
        EXPECT_EQ(decoded.progress.read,
                  encoded.find_first_of('=') == encoded.npos ? encoded.size() : encoded.find('='));
    }
}

TEST(Sixbit, EndsEachLineFullOrNot) {
    const auto encode = [](std::string_view plain, std::size_t line_length) {
        std::string out(encoded_size(plain.size(), line_length), '\0');
        EXPECT_EQ(encode_base64(plain, line_length, out.data()), out.size());
        return out;
    };
    EXPECT_EQ(encode("abcdefg", 8), "YWJjZGVm\r\nZw==\r\n");
    EXPECT_EQ(encode("abcdef", 8), "YWJjZGVm\r\n");
    EXPECT_EQ(encode("", 8), "");
}

TEST(Sixbit, ReadsTheBinHexAlphabet) {
    const std::string name_and_type(
        "\x01"
        "a\0TEXT\0\0",
        9);
    EXPECT_EQ(run(decode, Alphabet::binhex, "!@%!9%9B\r9!!!", {}, 0).bytes, name_and_type);
}

}  // namespace
}  // namespace quill::codec::sixbit
