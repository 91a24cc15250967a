#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// Four characters for three bytes, with blanks and line ends anywhere between them: the common core of Base64 (RFC
/// 2045 6.8, RFC 4648 4) and of the 6-bit step of BinHex 4.0.
///
/// Each kernel has a scalar reference that defines the right result; the kernel gives the same bytes for the same
/// input.
namespace quill::codec::sixbit {

enum class Alphabet : std::uint8_t {
    base64,  ///< A-Z a-z 0-9 + /
    binhex   ///< !"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr
};

/// The state that a run leaves for the next one: up to three characters of an incomplete group.
struct State {
    std::uint32_t bits = 0;     ///< the values of those characters, the latest in the lowest 6 bits
    std::uint32_t pending = 0;  ///< their number: 0 to 3

    bool operator==(const State&) const = default;
};

/// The progress of a run.
struct Progress {
    std::size_t read = 0;     ///< bytes of input consumed; fewer than given if it stopped at a foreign byte
    std::size_t written = 0;  ///< bytes of output

    bool operator==(const Progress&) const = default;
};

/// Returns the most bytes that `decode` can write for `n` bytes of input, including pending ones. `decode` may
/// overwrite all of them.
constexpr std::size_t decoded_bound(std::size_t n) {
    return (n + 3) / 4 * 3 + 3;
}

/// Decodes `in` up to its end or the first byte that is neither in the alphabet nor CR, LF, blank or tab ('=' is such a
/// byte). Writes only whole groups of three bytes; the rest stays in `state`. `out` must have room for
/// decoded_bound(in.size()).
Progress decode(Alphabet alphabet, std::string_view in, char* out, State& state);
Progress decode_reference(Alphabet alphabet, std::string_view in, char* out, State& state);

/// Writes the bytes that the pending characters yield at the end of the data (2 characters give 1 byte, 3 give 2; 1
/// gives none) and resets `state`. Returns how many were written: 0 to 2.
std::size_t finish(char* out, State& state);

/// Writes the characters of `in`, whose size is a multiple of 3, without line ends. Returns their number, in.size() / 3
/// * 4.
std::size_t encode_groups(Alphabet alphabet, std::string_view in, char* out);
std::size_t encode_groups_reference(Alphabet alphabet, std::string_view in, char* out);

/// Returns the exact length of `encode_base64`'s output: padded groups, with a line end after each full or partial
/// line. `line_length` is in characters, a multiple of 4; 0 gives one line without an end.
std::size_t encoded_size(std::size_t n, std::size_t line_length);

/// Writes Base64 with '=' padding, lines of `line_length` characters, each ended by CR LF. To encode in pieces, make
/// each but the last a multiple of line_length / 4 * 3 bytes. Returns encoded_size(in.size(), line_length).
std::size_t encode_base64(std::string_view in, std::size_t line_length, char* out);
std::size_t encode_base64_reference(std::string_view in, std::size_t line_length, char* out);

}  // namespace quill::codec::sixbit
