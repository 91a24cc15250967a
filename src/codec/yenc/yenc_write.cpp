#include "codec/yenc/yenc_write.h"

#include "checksum/checksum.h"
#include "codec/writing/encode.h"
#include "codec/writing/encode_output.h"
#include "codec/yenc/yenc.h"
#include "codec/yenc/yenc_post.h"
#include "text/writer.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace quill::codec {
namespace {

constexpr std::size_t default_line_length = 128;

std::string crc_field(std::string_view key, std::uint32_t crc) {
    return std::string(" ").append(key) + '=' + yenc::hexadecimal(crc);
}

std::string field(std::string_view key, std::uint64_t value) {
    return std::string(" ").append(key) + '=' + std::to_string(value);
}

std::string head(const EncodePiece& piece, std::size_t line_length) {
    const bool parts = piece.count > 1;
    std::string head;
    text::append_line(head, "");
    text::append_line(head, "");
    text::append_line(head, "=ybegin" + (parts ? field("part", piece.number) + field("total", piece.count) : "") +
                                field("line", line_length) + field("size", piece.file.size()) +
                                " name=" + name_at_line_end(piece.name));
    if (parts) text::append_line(head, "=ypart" + field("begin", piece.begin + 1) + field("end", piece.end));
    return head;
}

/// Returns the CRC-32 of the file up to the end of `piece`, whose own is `piece_crc`.
std::uint32_t crc_to_the_end(const EncodePiece& piece, std::uint32_t piece_crc) {
    if (piece.begin == 0) return piece_crc;
    return crc32(0, piece.file.substr(0, piece.end));
}

std::string tail(const EncodePiece& piece, bool with_crc, std::uint32_t piece_crc) {
    const bool parts = piece.count > 1;
    std::string line = "=yend" + field("size", piece.end - piece.begin);
    if (parts) line += field("part", piece.number) + crc_field("pcrc32", piece_crc);
    if (with_crc && piece.number == piece.count) line += crc_field("crc32", crc_to_the_end(piece, piece_crc));
    std::string tail;
    text::append_line(tail, "");
    text::append_line(tail, line);
    return tail;
}

}  // namespace

bool write_yenc(const EncodePiece& piece, const EncodeOptions& options, EncodeOutput& output) {
    const std::size_t line_length = options.line_length == 0 ? default_line_length : options.line_length;
    const bool wants_crc = options.crc || piece.count > 1;
    output.write(head(piece, line_length));
    yenc::Column column;
    std::uint32_t crc = 0;
    const auto bound = [line_length](std::size_t n) { return yenc::encoded_bound(n, line_length); };
    const auto encode = [&](std::string_view in, char* out) {
        if (wants_crc) crc = crc32(crc, in);
        return yenc::encode(in, line_length, column, out);
    };
    if (!encode_in_blocks(piece, output, 1, bound, encode)) return false;
    return output.write(tail(piece, options.crc, crc));
}

}  // namespace quill::codec
