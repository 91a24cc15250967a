#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The bytes of yEnc data (yEnc draft 1.3): value + 42 modulo 256, with '=' before bytes that are a further 64 up.
namespace quill::codec::yenc {

/// Which reading of odd input a run follows. All agree on what a proper encoder writes with CR LF line ends.
enum class Rules : std::uint8_t {
    /// A CR LF is no data, nor are two blanks before it. A lone CR gives 227, a lone LF 224. `=y` that is not `=yen`
    /// gives
    /// 79 and leaves the `y` to be read as data.
    plain,
    /// As `plain`; in addition of two dots at the start of a line (behind an LF) one is dropped.
    dotted,
    /// As the draft says: every CR and every LF is passed over, nothing else is. `=y` at the start of a line ends the
    /// data.
    draft,
    /// As `draft`; in addition of two dots at the start of a line one is dropped.
    draft_dotted
};

/// How far a run came, and why it ended.
struct Progress {
    std::size_t read = 0;     ///< bytes of input used up; where `ended`, the end marker's '=' is the next byte
    std::size_t written = 0;  ///< bytes of output
    bool ended = false;       ///< the end marker (`=yen`, or `=y` at a line start under the draft rules) was met

    bool operator==(const Progress&) const = default;
};

/// The most bytes that `decode` writes for `n` bytes of input. It may overwrite all of them.
constexpr std::size_t decoded_bound(std::size_t n) {
    return n + 64;
}

/// Bytes behind the current one that a rule may look at.
constexpr std::size_t look_ahead = 3;

/// Decodes `in`, whose first byte stands behind `previous` (10 where a line begins there). Stops short of the last
/// `look_ahead` bytes unless `last`, so that a long text can be given piece by piece: begin the next piece at `read`,
/// with the byte before it as `previous`. `out` must hold decoded_bound(in.size()).
Progress decode(Rules rules, std::string_view in, unsigned char previous, bool last, char* out);
Progress decode_reference(Rules rules, std::string_view in, unsigned char previous, bool last, char* out);

/// Where a line of the encoder stands between two calls.
struct Column {
    std::size_t characters = 0;  ///< written on the current line
};

/// The most bytes that `encode` writes for `n` bytes of input.
std::size_t encoded_bound(std::size_t n, std::size_t line_length);

/// Encodes `in`, breaking a line by CR LF once it holds at least `line_length` characters (so an escaped pair may make
/// it one longer); only NUL, LF, CR and '=' are escaped. Does not end the last line. Returns the bytes written.
std::size_t encode(std::string_view in, std::size_t line_length, Column& column, char* out);
std::size_t encode_reference(std::string_view in, std::size_t line_length, Column& column, char* out);

}  // namespace quill::codec::yenc
