#include "archive/methods/methods.h"

#include "archive/methods/compressors.h"
#include "archive/methods/prefix_code.h"
#include "archive/streams.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::archive {
namespace {

using tests::BitWriter;

constexpr std::uint16_t end_marker = 2, large_window_and_literals = 6;

struct Stream {
    const char* what;
    StreamInfo info;
    std::string packed;
    std::string content;
};

std::string repeated(std::string_view text, std::size_t size) {
    std::string out;
    while (out.size() < size) out += text;
    return out.substr(0, size);
}

std::vector<Stream> streams() {
    const std::string text = tests::sample_content(), head = text.substr(0, 4000);
    const std::string far = tests::sample_content(49'153);
    // The changed length code of Deflate64, over its farthest distance code and over the nearest.
    const std::string far_match = far + far.substr(0, 9000), run = "x" + std::string(65'538, 'x');
    const std::string period = repeated(head.substr(0, 3000), 9000);
    const auto size = [](const std::string& content) { return std::optional<std::uint64_t>(content.size()); };
    return {
        {"stored", {0}, text, text},
        {"shrunk", {1}, tests::shrunk(head), head},
        {"reduced", {2, 0, size(head)}, tests::reduced(tests::escaped(head)), head},
        {"imploded", {6, large_window_and_literals, size(period)}, tests::imploded(period, 3000), period},
        {"deflated", {8}, tests::deflated(text), text},
        {"deflate64, dynamic codes", {9}, tests::deflated(text, Z_HUFFMAN_ONLY), text},
        {"deflate64, stored blocks", {9}, std::string("\x01\x03\x00\xFC\xFF", 5) + "abc", "abc"},
        {"deflate64, a far match", {9}, tests::deflate64_match(far, 31, 9000 - 3), far_match},
        {"bzip2", {12}, tests::bzipped(text), text},
        {"LZMA with a mark", {14, end_marker, size(text)}, tests::lzma_compressed(text, true), text},
        {"LZMA of a size", {14, 0, size(text)}, tests::lzma_compressed(text, false), text},
        {"Zstandard", {93}, tests::zstandard_compressed(text), text},
        {"Zstandard's old number", {20}, tests::zstandard_compressed(text), text},
        {"xz", {95}, tests::xzipped(text), text},
        {"PPMd", {98}, tests::ppmd_stream(), std::string(tests::ppmd_content)},
    };
}

struct Decoded {
    std::string content;
    StreamState state = StreamState::running;
    std::size_t read = 0;
};

/// Decompresses `packed` in steps of up to `in_size` bytes of input and `out_size` of output.
Decoded decode(const StreamInfo& info, std::string_view packed, std::size_t in_size, std::size_t out_size,
               std::size_t most = 1U << 20U) {
    const DecompressorPtr method = find_method(info.method)->make(info);
    Decoded decoded;
    std::string out(out_size, '\0');
    while (decoded.content.size() < most) {
        const std::string_view in = packed.substr(decoded.read, in_size);
        const Step step = method->step(in, out);
        EXPECT_LE(step.read, in.size());
        EXPECT_LE(step.written, out.size());
        decoded.content.append(out, 0, step.written);
        decoded.read += step.read;
        decoded.state = step.state;
        if (step.state != StreamState::running && step.state != StreamState::complete) break;
        if (step.read == 0 && step.written == 0) {
            EXPECT_TRUE(in.empty()) << "no way on";
            break;
        }
    }
    return decoded;
}

bool at_end(const Decoded& decoded) {
    return decoded.state == StreamState::ended || decoded.state == StreamState::complete;
}

TEST(Methods, GiveTheSameBytesInStepsOfAnySize) {
    for (const Stream& stream : streams()) {
        SCOPED_TRACE(stream.what);
        for (const auto& [in, out] : {std::pair{1U << 20U, 1U << 20U}, {1U, 1U << 16U}, {1U << 20U, 1U}, {7U, 11U}}) {
            const Decoded decoded = decode(stream.info, stream.packed, in, out);
            EXPECT_EQ(decoded.content, stream.content) << in << " " << out;
            EXPECT_TRUE(at_end(decoded)) << in << " " << out;
            EXPECT_EQ(decoded.read, stream.packed.size()) << in << " " << out;
        }
    }
}

TEST(Methods, AStreamWithAMarkLeavesWhatFollowsIt) {
    for (const Stream& stream : streams()) {
        const bool takes_all_input = stream.info.method < 2 || stream.info.method == 98;
        if (takes_all_input) continue;
        SCOPED_TRACE(stream.what);
        const Decoded decoded = decode(stream.info, stream.packed + "PK\7\10 more", 1U << 20U, 1U << 20U);
        EXPECT_EQ(decoded.content, stream.content);
        EXPECT_EQ(decoded.state, StreamState::ended);
        EXPECT_EQ(decoded.read, stream.packed.size());
    }
}

TEST(Methods, ACutStreamDoesNotEnd) {
    for (const Stream& stream : streams()) {
        const bool ends_with_input = stream.info.method < 2;
        if (ends_with_input) continue;
        SCOPED_TRACE(stream.what);
        for (std::size_t size = 0; size + 1 < stream.packed.size(); size += 1 + size / 8) {
            const Decoded decoded = decode(stream.info, std::string_view(stream.packed).substr(0, size), 1000, 1000);
            EXPECT_FALSE(at_end(decoded) && decoded.content == stream.content) << size;
            EXPECT_EQ(decoded.content, stream.content.substr(0, decoded.content.size())) << size;
        }
    }
}

TEST(Methods, AChangedStreamComesToAnEndOfSomeKind) {
    for (const Stream& stream : streams()) {
        SCOPED_TRACE(stream.what);
        for (std::size_t at = 0; at < stream.packed.size(); at += 1 + at / 16) {
            std::string changed = stream.packed;
            changed[at] = static_cast<char>(changed[at] ^ 0x55);
            decode(stream.info, changed, 1U << 20U, 1U << 16U);
        }
    }
}

TEST(Compressors, WriteInStepsOfAnySizeWhatTheirMethodReads) {
    const std::string content = tests::sample_content();
    for (const CompressionMethod& row : compression_methods()) {
        if (row.make == nullptr) continue;
        SCOPED_TRACE(row.name);
        for (const auto& [in, out] : {std::pair{1U << 20U, 1U << 20U}, {7U, 11U}}) {
            const auto compressor = row.make(5);
            std::string packed, room(out, '\0');
            Step step;
            for (std::size_t at = 0; step.state == StreamState::running; at += step.read) {
                const std::string_view part = std::string_view(content).substr(at, in);
                step = compressor->step(part, room, at + part.size() == content.size());
                packed.append(room, 0, step.written);
            }
            EXPECT_EQ(step.state, StreamState::ended);
            EXPECT_LT(packed.size(), content.size());
            EXPECT_EQ(decode({row.number}, packed, packed.size(), content.size()).content, content);
        }
    }
}

TEST(Methods, OnlyThoseThatCanBeReadHaveADecompressor) {
    std::vector<int> unread;
    for (const Method& method : methods()) {
        EXPECT_EQ(find_method(method.number), &method);
        if (method.make == nullptr) unread.push_back(method.number);
    }
    EXPECT_THAT(unread, ::testing::ElementsAre(7, 10, 16, 18, 19, 97, 99));
    EXPECT_EQ(find_method(77), nullptr);
}

TEST(PrefixCode, OfImplodedDataIsThatOfTheFormatsExample) {
    // APPNOTE 5.3.8: lengths of eight symbols, and their codes with the first bit lowest.
    const std::vector<std::uint8_t> lengths{3, 3, 3, 3, 3, 2, 4, 4};
    const std::vector<std::uint32_t> codes{0b101, 0b001, 0b110, 0b010, 0b100, 0b11, 0b1000, 0b0000};
    PrefixCode code;
    ASSERT_TRUE(code.build_imploded(lengths));
    for (std::size_t symbol = 0; symbol < codes.size(); ++symbol) {
        const std::string bytes = BitWriter().put(codes[symbol], lengths[symbol]).bytes();
        std::string_view in = bytes;
        BitReader bits;
        bits.fill(in);
        EXPECT_EQ(code.read(bits), static_cast<int>(symbol));
    }
}

TEST(PrefixCode, RefusesMoreCodesThanFitAndFindsNoSymbolForWhatIsLeftOver) {
    const std::vector<std::uint8_t> too_many{1, 1, 1}, one_left{1, 2}, none{0, 0};
    PrefixCode code;
    EXPECT_FALSE(code.build(too_many));
    EXPECT_FALSE(code.build_imploded(too_many));
    for (const auto& lengths : {one_left, none}) {
        ASSERT_TRUE(code.build(lengths));
        std::string_view in = "\xFF";
        BitReader bits;
        bits.fill(in);
        EXPECT_EQ(code.read(bits), -1);
    }
}

/// Codes of method 1, `{code, bits}`.
std::string shrunk_codes(std::initializer_list<std::pair<std::uint32_t, unsigned>> codes) {
    BitWriter bits;
    for (const auto& [code, count] : codes) bits.put(code, count);
    return bits.bytes();
}

TEST(Shrunk, UndoesCodesThatAreEnteredWidenedAndCleared) {
    const struct {
        const char* what;
        std::string packed, content;
        bool broken = false;
    } cases[] = {
        {"a string of two", shrunk_codes({{'a', 9}, {'b', 9}, {257, 9}}), "abab"},
        {"the code that is entered next", shrunk_codes({{'a', 9}, {257, 9}, {258, 9}}), "aaaaaa"},
        {"wider codes", shrunk_codes({{'a', 9}, {256, 9}, {1, 9}, {'b', 10}, {257, 10}}), "abab"},
        {"a leaf cleared", shrunk_codes({{'a', 9}, {'b', 9}, {256, 9}, {2, 9}, {'c', 9}, {257, 9}}), "abcbc"},
        // The clearing frees 257, the last string, from which the next entry is made: that entry is its own beginning.
        {"the last string cleared", shrunk_codes({{'a', 9}, {'b', 9}, {257, 9}, {256, 9}, {2, 9}, {'c', 9}, {257, 9}}),
         "ababc", true},
        {"a parent kept", shrunk_codes({{'a', 9}, {257, 9}, {'x', 9}, {256, 9}, {2, 9}, {257, 9}}), "aaaxaa"},
        {"a code that is not entered", shrunk_codes({{'a', 9}, {300, 9}}), "a", true},
        {"a first code without a meaning", shrunk_codes({{257, 9}}), "", true},
        {"an unknown command", shrunk_codes({{256, 9}, {3, 9}}), "", true},
        {"codes wider than 13 bits",
         shrunk_codes(
             {{256, 9}, {1, 9}, {256, 10}, {1, 10}, {256, 11}, {1, 11}, {256, 12}, {1, 12}, {256, 13}, {1, 13}}),
         "", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Decoded decoded = decode({1}, c.packed, 1, 1);
        EXPECT_EQ(decoded.content, c.content);
        EXPECT_EQ(decoded.state, c.broken ? StreamState::broken : StreamState::complete);
    }
}

TEST(Reduced, UndoesRepeatsAndFollowers) {
    const std::string escape("\x90", 1), zero(1, '\0');
    const struct {
        const char* what;
        std::uint16_t method;
        std::string first_stage, content;
    } cases[] = {
        {"an escape byte itself", 2, escape + zero, escape},
        {"a repeat", 2, "abcd" + escape + "\x01\x03", "abcdabcd"},
        {"a longer one", 5, "ab" + escape + "\x0F\x02\x01", repeated("ab", 22)},
        {"a repeat of what is before the beginning", 3, "a" + escape + "\x01\x07", "a" + std::string(4, '\0')},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(decode({c.method, 0, c.content.size()}, tests::reduced(c.first_stage), 1, 1).content, c.content);
    }
    // "a" is followed by "b" or "c", each of them with one bit of an index; then a byte that is not in the set.
    BitWriter bits;
    for (int byte = 255; byte >= 0; --byte) byte == 'a' ? bits.put(2, 6).put('b', 8).put('c', 8) : bits.put(0, 6);
    bits.put('a', 8).put(0, 1).put(1, 1).put('a', 8).put(0, 1).put(0, 1).put('a', 8).put(1, 1).put('z', 8);
    EXPECT_EQ(decode({4, 0, 6}, bits.bytes(), 1, 1).content, "acabaz");
}

}  // namespace
}  // namespace quill::archive
