#include "codec/uu/uu_write.h"

#include "codec/uu/uu.h"
#include "codec/writing/encode_output.h"
#include "text/writer.h"

#include <string>

namespace quill::codec {
namespace {

constexpr std::size_t bytes_on_line = 45;
constexpr std::size_t full_line = 61;  // characters

std::string head(const EncodePiece& piece) {
    std::string head;
    if (piece.count > 1) {
        text::append_line(head, std::string("Subject: ").append(piece.name) + " (" + std::to_string(piece.number) +
                                    '/' + std::to_string(piece.count) + ')');
        text::append_line(head, "");
    }
    if (piece.number > 1) return head;
    const std::string begin = "begin 644 " + name_at_line_end(piece.name);
    // Four lines of one length, or with one character more in the first, look like data without its header.
    if (begin.size() == full_line || begin.size() == full_line + 1) text::append_line(head, "");
    text::append_line(head, begin);
    return head;
}

bool write(uu::Alphabet alphabet, const EncodePiece& piece, EncodeOutput& output) {
    output.write(head(piece));
    const auto encode = [alphabet](std::string_view in, char* out) { return uu::encode_lines(alphabet, in, out); };
    if (!encode_in_blocks(piece, output, bytes_on_line, uu::encoded_size, encode)) return false;
    if (piece.number < piece.count) return true;
    std::string tail;
    text::append_line(tail, std::string(1, uu::character_for(alphabet, 0)));
    text::append_line(tail, "end");
    return output.write(tail);
}

}  // namespace

bool write_uue(const EncodePiece& piece, const EncodeOptions&, EncodeOutput& output) {
    return write(uu::Alphabet::uu, piece, output);
}

bool write_xxe(const EncodePiece& piece, const EncodeOptions&, EncodeOutput& output) {
    return write(uu::Alphabet::xx, piece, output);
}

}  // namespace quill::codec
