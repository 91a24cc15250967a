#include "codec/kernel_targets.h"
#include "codec/scan/scanner.h"
#include "codec/yenc/yenc_post.h"
#include "codec/yenc/yenc_rows.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace quill::codec::yenc {
namespace {

/// What comes out of `text`, read through `read` or in place.
std::string decoded(std::string_view text, bool dotted, const ReadText& read) {
    std::string out;
    decode_data(
        text, *read_post(text), dotted,
        [&](std::string_view bytes, std::size_t) {
            out += bytes;
            return true;
        },
        read);
    return out;
}

/// Posts longer than several pieces: lines that end the data for a moment, dots at line starts, no line ends at all.
TEST(YencPieces, AreTheSameReadAsTouched) {
    std::string text;
    for (int i = 0; i < 12'000; ++i) {
        text += std::string(static_cast<std::size_t>(i % 131), static_cast<char>('a' + i % 20)) + "\r\n";
        if (i % 7 == 0) text += "..dots=}\r\n";
        if (i % 500 == 0) text += "=yx\r\n=y\r\n=y1\r\n";
    }
    for (const std::string& data : {text, std::string(700'000, 'x'), std::string("a"), std::string()}) {
        const std::string post = "=ybegin line=128 size=9 name=a\r\n" + data + "\r\n=yend size=9\r\n";
        const ReadText copy = [&](std::size_t at, char* out, std::size_t size) {
            return std::string_view(post).copy(out, size, at);
        };
        const ReadText cut_off = [](std::size_t, char*, std::size_t) { return std::size_t{0}; };
        const Post read = *read_post(post);
        EXPECT_EQ(dots_look_added(post, read, copy), dots_look_added(post, read));
        for (const bool dotted : {false, true}) {
            const std::string in_place = decoded(post, dotted, {});
            EXPECT_EQ(decoded(post, dotted, copy), in_place);
            EXPECT_EQ(decoded(post, dotted, cut_off), in_place);
        }
    }
}

/// One dot that was not doubled is enough, wherever a piece ends.
TEST(YencPieces, ShowASingleDotAtTheSeamOfTwo) {
    constexpr std::size_t piece = std::size_t{256} << 10U;
    for (std::size_t at = piece - 4; at < piece + 4; ++at) {
        std::string data = "..\r\n" + std::string(2 * piece, 'x');
        data.replace(at, 4, "\r\n..");
        const auto looks_added = [](const std::string& lines) {
            const std::string post = "=ybegin line=128 size=9 name=a\r\n" + lines + "\r\n=yend size=9\r\n";
            const ReadText copy = [&](std::size_t from, char* out, std::size_t size) {
                return std::string_view(post).copy(out, size, from);
            };
            return dots_look_added(post, *read_post(post), copy);
        };
        EXPECT_TRUE(looks_added(data)) << at;
        data[at + 3] = 'x';
        EXPECT_FALSE(looks_added(data)) << at;
    }
}

/// Lines that might each be the end of a post are all looked at, and yet none is read twice.
TEST(YencScan, ReadsNoByteAgainForEachLineThatLooksLikeAnEnd) {
    for (const std::string line : {"=y\r\n", ".\r\n", "--\r\n", "x\r\n"}) {
        std::string post = "=ybegin line=128 size=9 name=a\r\n";
        for (int i = 0; i < 20'000; ++i) post += line;
        post += "=yend size=9\r\n";
        std::size_t read = 0;
        LineCursor cursor({{post, {0, post.size(), 0}}}, {},
                          [&](const Segment&, std::uint64_t offset, char* out, std::size_t size) {
                              read += size;
                              return std::string_view(post).copy(out, size, offset);
                          });
        EXPECT_EQ(scan(cursor).files.size(), 1U);
        EXPECT_LE(read, 2 * post.size()) << line;
    }
}

bool saw_even_rows(std::string_view data, const Post& post, quill::codec::test::Random& random) {
    RowWatch rows(post);
    constexpr std::size_t first_row = 16;  // must be whole in the first piece
    for (std::size_t least = first_row; !data.empty(); least = 1) {
        const std::size_t size = std::min(data.size(), least + random.below(90));
        rows.take(data.substr(0, size));
        data.remove_prefix(size);
    }
    return rows.saw_even_rows();
}

/// Rows of 10 characters, some of them with an escape at their end or a second dot, then changed at one place.
TEST(YencRows, AreWatchedInPiecesAsTheyAreMeasuredAtOnce) {
    quill::codec::test::Random random(7);
    std::size_t even = 0;
    for (int round = 0; round < 4'000; ++round) {
        std::string data;
        for (std::size_t row = 0, rows = 1 + random.below(30); row < rows; ++row) {
            const std::string text = random.text(9, "abcd");
            const std::string_view kind = random.below(4) == 0 ? "=}" : "x";
            data += random.below(9) == 0 ? ".." + text.substr(1) : text;
            data.append(kind) += "\r\n";
        }
        data += random.text(1 + random.below(9), "ab");
        if (round % 2 == 1) {
            constexpr std::string_view changes[] = {"", "\r\n", "\n", "\r", "a", "=", "aa\r\n"};
            data.replace(random.below(data.size()), random.below(3), changes[random.below(std::size(changes))]);
        }
        const std::string text = "=ybegin line=10 size=9 name=a\r\n" + data + "\r\n=yend size=9\r\n";
        const Post post = *read_post(text);
        const std::string_view seen = std::string_view(text).substr(post.data_begin, post.data_end - post.data_begin);
        const bool saw_even = saw_even_rows(seen, post, random);
        if (saw_even) {
            ++even;
            ASSERT_FALSE(has_uneven_rows(text, post)) << testing::PrintToString(data);
        }
        if (round % 2 == 0 && data.size() > 24) {
            ASSERT_TRUE(saw_even) << testing::PrintToString(data);
        }
    }
    EXPECT_GT(even, 1'800U);
}

}  // namespace
}  // namespace quill::codec::yenc
