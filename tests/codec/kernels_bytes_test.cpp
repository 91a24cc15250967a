#include "checksum/checksum.h"
#include "codec/binhex/binhex_runs.h"
#include "codec/input/lines.h"
#include "codec/kernel_targets.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <utility>

namespace quill::codec {
namespace {

using test::ExactBytes;
using test::most_bytes;
using test::on_each_target;
using test::Random;

TEST(LineEndKernel, FindsTheFirstAsItsReference) {
    on_each_target([] {
        Random random(31);
        for (std::size_t n = 0; n <= most_bytes; ++n) {
            std::string text = random.text(n, "ab\x0B\x0E\x8D\x8A");
            for (const std::size_t gap : {std::size_t{1}, std::size_t{40}, std::size_t{300}}) {
                for (std::size_t at = random.below(gap); at < n; at += 1 + random.below(gap)) {
                    text[at] = random.one_of("\r\n");
                }
                const ExactBytes in(text, test::offsets[n % 4]);
                for (std::size_t from = 0; from <= n; from += 1 + from / 8) {
                    ASSERT_EQ(find_line_end(in.view(), from), find_line_end_reference(in.view(), from)) << n;
                }
            }
        }
    });
}

TEST(LineBeginningKernel, FindsTheFirstAsItsReference) {
    on_each_target([] {
        Random random(33);
        for (int round = 0; round < 4000; ++round) {
            // Long lines, with matches in the middle of them, and short pieces of all line ends.
            std::string text = random.text(random.below(most_bytes), round % 2 == 0 ? "ab=-" : "abcd\x80");
            for (std::size_t at = random.below(90); at < text.size(); at += 1 + random.below(90)) {
                constexpr std::string_view pieces[] = {"\r\n", "\n", "\r", "\r\r\n", "\r\n=", "\na", "\r."};
                const std::string_view piece = pieces[random.below(std::size(pieces))];
                text.replace(at, std::min(piece.size(), text.size() - at), piece);
            }
            const ExactBytes in(text, random.below(64));
            ASSERT_EQ(count_line_ends(in.view()), count_line_ends_reference(in.view()));
            for (std::size_t from = 0; from < text.size();
                 from = find_line_beginning_reference(in.view(), from, "abcd=-\x80")) {
                ASSERT_EQ(find_line_beginning(in.view(), from, "=-F."),
                          find_line_beginning_reference(in.view(), from, "=-F."))
                    << from << " in " << testing::PrintToString(text);
            }
        }
    });
}

TEST(LineBeginning, IsBehindEachKindOfLineEnd) {
    const std::pair<std::string_view, std::size_t> cases[] = {
        {"", 0},           {"=a", 2},         {"a\n=", 2},     {"a\r=", 2},    {"a=\r\n", 4},
        {"a\r\n=", 3},     {"a\r\n\r\nb", 3}, {"a\r\r\n=", 4}, {"a\r\rb", 2},  {"a\n\nb", 2},
        {"a\r\r\nb\n", 6}, {"a\n", 2},        {"\r\n=", 2},    {"\r\r\n=", 3}, {"a\nb\n=", 4}};
    for (const auto& [text, at] : cases) {
        EXPECT_EQ(find_line_beginning(text, 0, "="), at) << testing::PrintToString(std::string(text));
    }
}

/// The check values of the published catalogues of CRCs.
TEST(Checksum, AgreesWithTheCatalogue) {
    EXPECT_EQ(crc32(0, "123456789"), 0xCBF43926U);
    EXPECT_EQ(crc16_binhex(0, "123456789"), 0x31C3U);
}

TEST(Checksum, IsTheSameOnEachTarget) {
    // Bit by bit, as the polynomial defines it.
    const auto reference = [](std::uint32_t crc, std::string_view in) {
        crc = ~crc;
        for (const char c : in) {
            crc ^= static_cast<unsigned char>(c);
            for (int bit = 0; bit < 8; ++bit) crc = crc >> 1U ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0);
        }
        return ~crc;
    };
    on_each_target([&] {
        Random random(35);
        for (std::size_t n = 0; n < 2000; n += 1 + random.below(9)) {
            const ExactBytes in(n % 5 == 0 ? std::string(n, '\0') : random.bytes(n), random.below(64));
            const auto before = static_cast<std::uint32_t>(random.below(0x7FFFFFFF));
            for (const std::uint32_t crc : {0U, 0xFFFFFFFFU, before}) {
                ASSERT_EQ(crc32(crc, in.view()), reference(crc, in.view())) << n;
            }
        }
    });
}

TEST(Checksum, MayBeTakenPieceByPiece) {
    const std::string data = Random(32).bytes(100);
    const std::string_view view = data;
    std::uint16_t by_bytes = 0;
    for (std::size_t i = 0; i < data.size(); ++i) by_bytes = crc16_binhex(by_bytes, view.substr(i, 1));
    for (std::size_t cut = 0; cut <= data.size(); ++cut) {
        EXPECT_EQ(crc16_binhex(crc16_binhex(0, view.substr(0, cut)), view.substr(cut)), by_bytes);
        EXPECT_EQ(crc32(crc32(0, view.substr(0, cut)), view.substr(cut)), crc32(0, view));
    }
}

TEST(BinHexRunKernel, FindsWhatItsReferenceFinds) {
    on_each_target([] {
        Random random(34);
        for (int round = 0; round < 3000; ++round) {
            std::string text = random.text(random.below(most_bytes), "abcdefghijk");
            for (std::size_t i = random.below(4); i < text.size() && i > 0; --i) {
                const std::size_t at = random.below(text.size());
                text.replace(at, 1 + random.below(5), random.below(2) == 0 ? "xxxx" : "\x90");
            }
            const ExactBytes in(text, random.below(64));
            const std::size_t from = random.below(text.size() + 1);
            ASSERT_EQ(binhex::find_run_or_marker(in.view(), from),
                      binhex::find_run_or_marker_reference(in.view(), from))
                << from << " in " << testing::PrintToString(text);
        }
    });
}

/// Decodes in pieces of `piece` bytes into rooms of `room` bytes.
std::string decode_in_pieces(std::string_view in, std::size_t piece, std::size_t room) {
    binhex::RunState state;
    std::string result;
    ExactBytes out(room, 0);
    while (!in.empty() || state.copies_left > 0) {
        const binhex::Progress progress = decode_runs(in.substr(0, piece), out.data(), room, state);
        in.remove_prefix(progress.read);
        result.append(out.view(progress.written));
    }
    return result;
}

TEST(BinHexRuns, ExpandsMarkersHoweverTheyAreCut) {
    const std::pair<std::string_view, std::string> cases[] = {
        {"abc", "abc"},
        {{"a\x90\x05z", 4}, "aaaaaz"},
        {{"\x90\0", 2}, "\x90"},
        {{"a\x90\0\x90\x03z", 6}, "a\x90\x90\x90z"},
        {{"a\x90\x01z", 4}, "az"},
        {{"a\x90\xFF\x90\xFF", 5}, std::string(1 + 2 * 254, 'a')},
        {{"\x90\x03", 2}, std::string(2, '\0')},
        {"a\x90", "a"},
    };
    for (const auto& [in, expected] : cases) {
        for (const std::size_t piece : {1U, 2U, 100U}) {
            for (const std::size_t room : {1U, 2U, 3U, 600U}) EXPECT_EQ(decode_in_pieces(in, piece, room), expected);
        }
        EXPECT_LE(expected.size(), binhex::decoded_runs_bound(in.size()));
    }
}

}  // namespace
}  // namespace quill::codec
