#include "codec/binhex/binhex_write.h"

#include "checksum/checksum.h"
#include "codec/base64/sixbit.h"
#include "codec/binhex/binhex_runs.h"
#include "codec/uu/alphabets.h"
#include "codec/writing/encode_output.h"
#include "files/path.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string>

namespace quill::codec {
namespace {

constexpr std::size_t line_length = 64;
constexpr std::size_t longest_name = 63;

/// Turns the bytes of the forks into lines of characters. Every byte of the stream goes through here, so runs can span
/// the seams between header and forks.
class Packer {
  public:
    explicit Packer(std::string& out) : out_(out) {}

    void put(std::string_view bytes) {
        // The last bytes may begin a run that continues in the next piece.
        const std::size_t sure = bytes.size() - std::min(bytes.size(), binhex::shortest_run - 1);
        for (std::size_t at = 0; at < bytes.size();) {
            const bool run_goes_on = copies_ != 0 && bytes[at] == repeated_;
            const std::size_t plain = run_goes_on ? at : std::min(binhex::find_run_or_marker(bytes, at), sure);
            if (plain > at) {
                end_run();
                packed_.append(bytes.substr(at, plain - at));
                at = plain;
            } else {
                put_one(bytes[at++]);
            }
        }
        write_groups();
    }

    /// Writes what is held back, and the closing colon.
    void finish() {
        end_run();
        write_groups();
        if (const std::size_t rest = packed_.size(); rest > 0) {
            packed_.append(3 - rest, '\0');
            std::array<char, 4> group = {};
            sixbit::encode_groups(sixbit::Alphabet::binhex, packed_, group.data());
            characters({group.data(), rest + 1});
        }
        characters(":");
        out_.append("\r\n");
    }

    void characters(std::string_view text) {
        while (!text.empty()) {
            if (column_ == line_length) {
                out_.append("\r\n");
                column_ = 0;
            }
            const std::string_view line = text.substr(0, line_length - column_);
            out_.append(line);
            column_ += line.size();
            text.remove_prefix(line.size());
        }
    }

  private:
    static constexpr unsigned longest_run = 255;

    void put_one(char c) {
        if (copies_ != 0 && c == repeated_ && copies_ < longest_run) {
            ++copies_;
            return;
        }
        end_run();
        repeated_ = c;
        copies_ = 1;
    }

    void end_run() {
        const bool counted = copies_ >= binhex::shortest_run;
        for (unsigned i = 0; i < (counted ? 1 : copies_); ++i) {
            packed_ += repeated_;
            if (repeated_ == binhex::run_marker) packed_ += '\0';
        }
        if (counted) {
            packed_ += binhex::run_marker;
            packed_ += static_cast<char>(copies_);
        }
        copies_ = 0;
    }

    /// Writes the complete groups of the packed bytes.
    void write_groups() {
        const std::size_t whole = packed_.size() / 3 * 3;
        text_.resize(whole / 3 * 4);
        sixbit::encode_groups(sixbit::Alphabet::binhex, std::string_view(packed_).substr(0, whole), text_.data());
        characters(text_);
        packed_.erase(0, whole);
    }

    std::string& out_;
    std::size_t column_ = 0;
    char repeated_ = 0;
    unsigned copies_ = 0;  ///< of `repeated_`, held back
    std::string packed_;   ///< with its runs as markers and counts
    std::string text_;     ///< room for characters
};

std::string big_endian(std::uint32_t value, unsigned bytes) {
    std::string out;
    for (unsigned shift = bytes * 8; shift > 0; shift -= 8) out += static_cast<char>(value >> (shift - 8));
    return out;
}

/// Returns `name` in at most 63 bytes, cut between characters, with its extension kept if that leaves part of the stem.
std::string fitting_name(std::string_view name) {
    if (name.size() <= longest_name) return std::string(name);
    std::string_view extension = name.substr(files::extension_at(name));
    if (extension.size() >= longest_name / 2) extension = {};
    std::size_t cut = longest_name - extension.size();
    while (cut > 1 && (static_cast<unsigned char>(name[cut]) & 0xC0U) == 0x80U) --cut;
    return std::string(name.substr(0, cut)).append(extension);
}

std::string header(const EncodePiece& piece) {
    std::string name = fitting_name(piece.name);
    for (char& c : name) {
        if (c == ':') c = '-';  // the Macintosh's separator of directories
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
    packer.characters(":");
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
