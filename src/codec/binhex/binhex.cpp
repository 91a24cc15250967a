#include "codec/binhex/binhex.h"

#include "checksum/checksum.h"
#include "codec/base64/sixbit.h"
#include "codec/binhex/binhex_runs.h"

#include <array>
#include <vector>

namespace quill::codec::binhex {
namespace {

constexpr std::size_t longest_name = 63;

constexpr std::array<bool, 256> make_table() {
    std::array<bool, 256> table{};
    for (const char c : std::string_view("!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr"))
        table[static_cast<unsigned char>(c)] = true;
    return table;
}
constexpr std::array<bool, 256> data_characters = make_table();

std::uint32_t big_endian(std::string_view s, std::size_t at, std::size_t size) {
    std::uint32_t n = 0;
    for (const char c : s.substr(at, size)) n = n << 8U | static_cast<unsigned char>(c);
    return n;
}

}  // namespace

bool is_data_character(char c) {
    return data_characters[static_cast<unsigned char>(c)];
}

std::optional<Header> read_header(std::string_view stream) {
    if (stream.empty()) return std::nullopt;
    const std::size_t name_size = static_cast<unsigned char>(stream[0]);
    const std::size_t fields = 1 + name_size + 1;
    Header header;
    header.size = fields + 4 + 4 + 2 + 4 + 4 + 2;
    if (name_size == 0 || name_size > longest_name || stream.size() < header.size) return std::nullopt;
    if (stream[fields - 1] != 0) return std::nullopt;
    header.name = stream.substr(1, name_size);
    header.file_type = stream.substr(fields, 4);
    header.creator = stream.substr(fields + 4, 4);
    header.data_size = big_endian(stream, fields + 10, 4);
    header.resource_size = big_endian(stream, fields + 14, 4);
    const std::size_t crc = fields + 18;
    header.crc_agrees = crc16_binhex(0, stream.substr(0, crc)) == big_endian(stream, crc, 2);
    return header;
}

std::string decode_beginning(std::string_view encoded, std::size_t most) {
    // A run yields more bytes than it consumes, so this many characters are always enough if they hold no line ends.
    encoded = encoded.substr(0, (most + 2) * 2);
    std::vector<char> packed(sixbit::decoded_bound(encoded.size()));
    sixbit::State state;
    const std::size_t size = sixbit::decode(sixbit::Alphabet::binhex, encoded, packed.data(), state).written;
    std::string out(most, '\0');
    RunState runs;
    out.resize(decode_runs({packed.data(), size}, out.data(), most, runs).written);
    return out;
}

}  // namespace quill::codec::binhex
