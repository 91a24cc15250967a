#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The lines of uuencoded (POSIX uuencode, historical algorithm) and xxencoded text: one length character, then groups
/// of four characters for three bytes.
namespace quill::codec::uu {

enum class Alphabet : std::uint8_t {
    uu,  ///< value + 32; the value 0 is written '`' and also read from ' '
    xx   ///< +-0123456789A-Za-z
};

/// The progress of a run.
struct Progress {
    std::size_t read = 0;     ///< bytes of input consumed: whole lines
    std::size_t written = 0;  ///< bytes of output

    bool operator==(const Progress&) const = default;
};

/// Returns the most bytes that `decode_lines` can write for `n` bytes of input. It may overwrite all of them.
constexpr std::size_t decoded_bound(std::size_t n) {
    return n / 4 * 3 + 64;
}

/// Decodes the canonical lines at the beginning of `in`, and stops at the first other one, which the caller must check.
/// Canonical: a length character for 1 to 63 bytes, exactly the groups for them, every character in the alphabet, then
/// LF or CR LF (which must be in `in`). `out` must have room for decoded_bound(in.size()).
Progress decode_lines(Alphabet alphabet, std::string_view in, char* out);
Progress decode_lines_reference(Alphabet alphabet, std::string_view in, char* out);

/// Returns the value 0 to 63 of `c`, or -1 if it is not in the alphabet.
int value_of(Alphabet alphabet, char c);
/// Returns the character for `value`, 0 to 63.
char character_for(Alphabet alphabet, unsigned value);

/// Returns the exact length of the lines that `encode_lines` writes.
std::size_t encoded_size(std::size_t n);

/// Writes `in` as lines of 45 bytes (the last one shorter), each ended by CR LF, without the `begin` line, the empty
/// line and `end`. To encode in pieces, make each but the last a multiple of 45 bytes. Returns encoded_size(in.size()).
std::size_t encode_lines(Alphabet alphabet, std::string_view in, char* out);
std::size_t encode_lines_reference(Alphabet alphabet, std::string_view in, char* out);

}  // namespace quill::codec::uu
