#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// BinHex 4.0 (RFC 1741 appendix A): a Macintosh file as text, between two colons.
namespace quill::codec::binhex {

/// What stands before the forks.
struct Header {
    std::string name;                 ///< bytes, in Mac OS Roman
    std::string file_type;            ///< four characters
    std::string creator;              ///< four characters
    std::uint32_t data_size = 0;      ///< bytes of the data fork
    std::uint32_t resource_size = 0;  ///< bytes of the resource fork
    std::size_t size = 0;             ///< bytes of the header, its CRC included
    bool crc_agrees = false;
};

/// Reads the header that the decoded stream begins with; nullopt where it is too short or forms none (a name of 1 to
/// 63 bytes, then a zero).
std::optional<Header> read_header(std::string_view stream);

/// The most bytes that a header takes.
constexpr std::size_t longest_header = 1 + 63 + 1 + 4 + 4 + 2 + 4 + 4 + 2;

/// Whether `c` is of the 64 characters that hold data.
bool is_data_character(char c);

/// The first `most` bytes of the stream that `encoded`, its line ends and all, holds; fewer where it ends before that.
std::string decode_beginning(std::string_view encoded, std::size_t most);

}  // namespace quill::codec::binhex
