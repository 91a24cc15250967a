#include "codec/binhex_write.h"

#include "codec/alphabets.h"
#include "codec/checksum.h"
#include "codec/encode_output.h"
#include "files/path.h"
#include "text/utf8.h"

#include <cstdint>
#include <limits>
#include <string>

namespace quill::codec {
namespace {

constexpr std::size_t line_length = 64;
constexpr std::size_t longest_name = 63;

/// From the bytes of the forks to characters on lines. Every byte of the stream takes this way, so runs go over the
/// seams between header and forks.
class Packer {
  public:
    explicit Packer(std::string& out) : out_(out) {}

    void put(std::string_view bytes) {
        for (const char c : bytes) {
            const auto byte = static_cast<std::uint8_t>(c);
            if (copies_ != 0 && byte == repeated_ && copies_ < longest_run) {
                ++copies_;
            } else {
                end_run();
                repeated_ = byte;
                copies_ = 1;
            }
        }
    }

    /// Nothing more comes: what is held back goes out, and the closing colon.
    void finish() {
        end_run();
        const unsigned characters = pending_ == 0 ? 0 : pending_ + 1;
        group_ <<= (3 - pending_) * 8;
        write_group(characters);
        character(':');
        out_.append("\r\n");
    }

    void character(char c) {
        if (column_ == line_length) {
            out_.append("\r\n");
            column_ = 0;
        }
        out_ += c;
        ++column_;
    }

  private:
    static constexpr std::uint8_t marker = 0x90;
    static constexpr unsigned longest_run = 255;
    static constexpr unsigned shortest_run = 4;

    void end_run() {
        const unsigned plain = copies_ >= shortest_run ? 1 : copies_;
        for (unsigned i = 0; i < plain; ++i) {
            packed(repeated_);
            if (repeated_ == marker) packed(0);
        }
        if (copies_ >= shortest_run) {
            packed(marker);
            packed(static_cast<std::uint8_t>(copies_));
        }
        copies_ = 0;
    }

    void packed(std::uint8_t byte) {
        group_ = group_ << 8U | byte;
        if (++pending_ < 3) return;
        write_group(4);
    }

    /// Writes the first `characters` of the four that `group_` stands for.
    void write_group(unsigned characters) {
        for (unsigned i = 0; i < characters; ++i) character(binhex_characters[group_ >> (18 - 6 * i) & 0x3FU]);
        group_ = 0;
        pending_ = 0;
    }

    std::string& out_;
    std::size_t column_ = 0;
    std::uint8_t repeated_ = 0;
    unsigned copies_ = 0;  ///< of `repeated_`, held back
    std::uint32_t group_ = 0;
    unsigned pending_ = 0;  ///< bytes in `group_`
};

std::string big_endian(std::uint32_t value, unsigned bytes) {
    std::string out;
    for (unsigned shift = bytes * 8; shift > 0; shift -= 8) out += static_cast<char>(value >> (shift - 8));
    return out;
}

/// `name` in at most 63 bytes, cut between characters, its extension kept where that leaves something of the stem.
std::string fitting_name(std::string_view name) {
    if (name.size() <= longest_name) return std::string(name);
    std::string_view extension = name.substr(files::extension_at(name));
    if (extension.size() >= longest_name / 2) extension = {};
    std::size_t cut = longest_name - extension.size();
    while (cut > 1 && text::is_utf8(name) && (static_cast<unsigned char>(name[cut]) & 0xC0U) == 0x80U) --cut;
    return std::string(name.substr(0, cut)).append(extension);
}

std::string header(const EncodePiece& piece) {
    std::string name = fitting_name(piece.name);
    for (char& c : name) {
        if (c == ':') c = '-';  // between directories where this format is at home
    }
    std::string header(1, static_cast<char>(name.size()));
    header.append(name).append(1, '\0');
    header.append("????????");        // type and creator: unknown
    header.append(big_endian(0, 2));  // flags
    header.append(big_endian(static_cast<std::uint32_t>(piece.file.size()), 4));
    header.append(big_endian(0, 4));  // length of the resource fork
    return header.append(big_endian(crc16_binhex(0, header), 2));
}

}  // namespace

bool write_binhex(const EncodePiece& piece, const EncodeOptions&, EncodeOutput& output) {
    if (piece.file.size() > std::numeric_limits<std::uint32_t>::max()) return false;
    constexpr std::size_t block = 64 * 1024;
    std::string text = "(This file must be converted with BinHex 4.0)\r\n\r\n";
    Packer packer(text);
    packer.character(':');
    packer.put(header(piece));
    std::uint16_t crc = 0;
    for (std::size_t at = 0; at < piece.file.size(); at += block) {
        const std::string_view in = piece.file.substr(at, block);
        crc = crc16_binhex(crc, in);
        packer.put(in);
        if (!output.write(text) || !output.used(at + in.size())) return false;
        text.clear();
    }
    packer.put(big_endian(crc, 2));
    packer.put(big_endian(0, 2));  // the empty resource fork's CRC
    packer.finish();
    return output.write(text);
}

}  // namespace quill::codec
