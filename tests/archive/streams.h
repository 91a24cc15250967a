#pragma once

#include "archive/bit_writer.h"

#include <bzlib.h>
#include <cstdint>
#include <lzma.h>
#include <string>
#include <string_view>
#include <zlib.h>
#include <zstd.h>

/// Compressed streams of every method, made by the libraries' encoders and by small ones of our own.
namespace quill::tests {

/// Returns a text with repeats, including distant ones, and bytes of every value.
inline std::string sample_content(std::size_t size = 20'000) {
    std::string content;
    std::uint32_t state = 1;
    while (content.size() < size) {
        state = state * 1664525 + 1013904223;
        if (state >> 30U == 0) {
            content.push_back(static_cast<char>(state >> 16U));
        } else {
            content += "line " + std::to_string(state >> 28U) + " of a text that repeats\n";
        }
    }
    content.resize(size);
    return content;
}

/// Compresses with zlib's `strategy`; Z_HUFFMAN_ONLY makes streams that Deflate64 can read too.
inline std::string deflated(std::string_view content, int strategy = Z_DEFAULT_STRATEGY) {
    z_stream stream = {};
    deflateInit2(&stream, 6, Z_DEFLATED, -MAX_WBITS, 8, strategy);
    std::string out(deflateBound(&stream, content.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

inline std::string bzipped(std::string_view content) {
    std::string out(content.size() + content.size() / 50 + 600, '\0');
    auto size = static_cast<unsigned>(out.size());
    BZ2_bzBuffToBuffCompress(out.data(), &size, const_cast<char*>(content.data()),
                             static_cast<unsigned>(content.size()), 1, 0, 0);
    out.resize(size);
    return out;
}

inline std::string xzipped(std::string_view content) {
    std::string out(lzma_stream_buffer_bound(content.size()), '\0');
    std::size_t size = 0;
    lzma_easy_buffer_encode(0, LZMA_CHECK_CRC32, nullptr, reinterpret_cast<const std::uint8_t*>(content.data()),
                            content.size(), reinterpret_cast<std::uint8_t*>(out.data()), &size, out.size());
    out.resize(size);
    return out;
}

/// Returns method 14: version, size of the properties, properties, raw stream. `marked`: with an end mark (flag bit 1).
inline std::string lzma_compressed(std::string_view content, bool marked) {
    lzma_options_lzma options = {};
    lzma_lzma_preset(&options, 0);
    options.ext_flags = marked ? LZMA_LZMA1EXT_ALLOW_EOPM : 0;
    lzma_set_ext_size(options, marked ? LZMA_VLI_UNKNOWN : content.size());
    const lzma_filter filters[] = {{LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
    std::string out("\x13\x00\x05\x00", 4);
    out.push_back(static_cast<char>((options.pb * 5 + options.lp) * 9 + options.lc));
    for (unsigned i = 0; i < 4; ++i) out.push_back(static_cast<char>(options.dict_size >> 8 * i));
    std::size_t size = out.size();
    out.resize(content.size() + 4096);
    lzma_raw_buffer_encode(filters, nullptr, reinterpret_cast<const std::uint8_t*>(content.data()), content.size(),
                           reinterpret_cast<std::uint8_t*>(out.data()), &size, out.size());
    out.resize(size);
    return out;
}

/// Returns two frames, each with a checksum.
inline std::string zstandard_compressed(std::string_view content) {
    std::string out;
    const std::size_t half = content.size() / 2;
    for (const std::string_view part : {content.substr(0, half), content.substr(half)}) {
        ZSTD_CCtx* const context = ZSTD_createCCtx();
        ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, 1);
        std::string frame(ZSTD_compressBound(part.size()), '\0');
        frame.resize(ZSTD_compress2(context, frame.data(), frame.size(), part.data(), part.size()));
        ZSTD_freeCCtx(context);
        out += frame;
    }
    return out;
}

constexpr std::string_view ppmd_content = "a text, and a text, and a text";

/// Returns method 98, made by 7z: `7z a -tzip -mm=PPMd:mem=1m:o=6` of a file with `ppmd_content`.
inline std::string ppmd_stream() {
    return {"\x05\x00\x60\xbf\x19\xca\x5e\x8d\xa7\x3f\xa2\x95\x46\x1b\xb3\x7d\xfd\xec\x00", 19};
}

/// Returns one block of Deflate64 with fixed codes: literals, then one match over `distance` (code `distance_code`,
/// whose extra bits have the value 0) of the changed length code, for 3 + `more` bytes.
inline std::string deflate64_match(std::string_view content, std::uint32_t distance_code, std::uint32_t more) {
    BitWriter bits;
    bits.put(1, 1).put(1, 2);
    for (const char c : content) {
        const auto byte = static_cast<unsigned char>(c);
        byte < 144 ? bits.put_code(0x30U + byte, 8) : bits.put_code(0x190U + byte - 144U, 9);
    }
    bits.put_code(0xC0 + 285 - 280, 8).put(more, 16).put_code(distance_code, 5).put(0, 14);
    return bits.put_code(0, 7).bytes();
}

/// Returns method 6 with three trees and a window of 8 KiB: all codes of a tree have the same length, so that symbol s
/// has the code `last - s` (APPNOTE 5.3.7). Matches repeat bytes from `period` bytes before.
inline std::string imploded(std::string_view content, std::size_t period) {
    BitWriter bits;
    bits.put(15, 8);
    for (int i = 0; i < 16; ++i) bits.put(7 | 15U << 4U, 8);
    for (int tree = 0; tree < 2; ++tree) {
        bits.put(3, 8);
        for (int i = 0; i < 4; ++i) bits.put(5 | 15U << 4U, 8);
    }
    constexpr std::size_t least = 3, most = least + 63 + 255;
    for (std::size_t at = 0; at < content.size();) {
        std::size_t length = 0;
        while (at >= period && length < most && at + length < content.size() &&
               content[at + length] == content[at + length - period]) {
            ++length;
        }
        if (length < least) {
            bits.put(1, 1).put_code(255U - static_cast<unsigned char>(content[at++]), 8);
            continue;
        }
        const auto code = static_cast<std::uint32_t>(std::min<std::size_t>(length - least, 63));
        const auto distance = static_cast<std::uint32_t>(period - 1);
        bits.put(0, 1).put(distance & 127U, 7).put_code(63 - (distance >> 7U), 6).put_code(63 - code, 6);
        if (code == 63) bits.put(static_cast<std::uint32_t>(length - least - 63), 8);
        at += length;
    }
    return bits.bytes();
}

/// Returns method 1 without a dictionary: a code of 9 bits for each byte.
inline std::string shrunk(std::string_view content) {
    BitWriter bits;
    for (const char c : content) bits.put(static_cast<unsigned char>(c), 9);
    return bits.bytes();
}

/// Returns the first stage of methods 2 to 5 without repeats: a zero after each escape byte.
inline std::string escaped(std::string_view content) {
    std::string out;
    for (const char c : content) {
        out.push_back(c);
        if (c == '\x90') out.push_back('\0');
    }
    return out;
}

/// Returns methods 2 to 5 without sets of followers: the unchanged bytes of the first stage.
inline std::string reduced(std::string_view first_stage) {
    return std::string(192, '\0').append(first_stage);
}

}  // namespace quill::tests
