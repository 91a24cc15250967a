#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// BinHex 4.0 (RFC 1741 appendix A): a Macintosh file as text, between two colons.
namespace quill::codec::binhex {

/// The header before the forks.
struct Header {
    std::string name;                 ///< bytes, in Mac OS Roman
    std::string file_type;            ///< four characters
    std::string creator;              ///< four characters
    std::uint32_t data_size = 0;      ///< bytes of the data fork
    std::uint32_t resource_size = 0;  ///< bytes of the resource fork
    std::size_t size = 0;             ///< bytes of the header, its CRC included
    bool crc_agrees = false;
};

/// Reads the header at the beginning of the decoded stream; nullopt if the stream is too short or does not begin with a
/// header (a name of 1 to 63 bytes, then a zero).
std::optional<Header> read_header(std::string_view stream);

/// The largest size of a header, in bytes.
constexpr std::size_t longest_header = 1 + 63 + 1 + 4 + 4 + 2 + 4 + 4 + 2;

/// Returns true if `c` is one of the 64 characters that hold data.
bool is_data_character(char c);

/// Returns the first `most` bytes of the stream in `encoded`, which may contain line ends; fewer if the stream ends
/// earlier.
std::string decode_beginning(std::string_view encoded, std::size_t most);

}  // namespace quill::codec::binhex
