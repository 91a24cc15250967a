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

/// One dot that was not doubled is enough, wherever a piece ends.
TEST(YencPieces, ShowASingleDotAtTheSeamOfTwo) {
    constexpr std::size_t piece = std::size_t{256} << 10U;
    for (std::size_t at = piece - 4; at < piece + 4; ++at) {
        std::string data = "..\r\n" + std::string(2 * piece, 'x');
        data.replace(at, 4, "\r\n..");
        const auto looks_added = [](const std::string& lines) {
            const std::string post = "=ybegin line=128 size=9 name=a\r\n" + lines + "\r\n=yend size=9\r\n";
            return dots_look_added(post, *read_post(post));
        };
        EXPECT_TRUE(looks_added(data)) << at;
        data[at + 3] = 'x';
        EXPECT_FALSE(looks_added(data)) << at;
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

/// Rows of 10 characters, some with an escape at their end or a second dot, then changed at one place.
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
