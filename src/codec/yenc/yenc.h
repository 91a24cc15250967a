#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The bytes of yEnc data (yEnc draft 1.3): value + 42 modulo 256, with '=' before bytes that are another 64 higher.
namespace quill::codec::yenc {

/// The interpretation of unusual input. All agree on the output of a proper encoder with CR LF line ends.
enum class Rules : std::uint8_t {
    /// A CR LF is not data, and two blanks before it are not either. A lone CR gives 227, a lone LF 224. `=y` that is
    /// not `=yen` gives 79 and leaves the `y` to be read as data.
    plain,
    /// Like `plain`, but drops one of two dots at the start of a line (after an LF).
    dotted,
    /// As in the draft: every CR and every LF is skipped, and nothing else. `=y` at the start of a line ends the data.
    draft,
    /// Like `draft`, but drops one of two dots at the start of a line.
    draft_dotted
};

/// The progress of a run, and why it ended.
struct Progress {
    std::size_t read = 0;     ///< bytes of input consumed; if `ended`, the end marker's '=' is the next byte
    std::size_t written = 0;  ///< bytes of output
    bool ended = false;       ///< the end marker (`=yen`, or `=y` at a line start under the draft rules) was found

    bool operator==(const Progress&) const = default;
};

/// Returns the most bytes that `decode` writes for `n` bytes of input. It may overwrite all of them.
constexpr std::size_t decoded_bound(std::size_t n) {
    return n + 64;
}

/// Bytes after the current one that a rule may examine.
constexpr std::size_t look_ahead = 3;

/// Decodes `in`, whose first byte follows `previous` (10 if a line begins there). Stops short of the last `look_ahead`
/// bytes unless `last`, so that a long text can be given piece by piece: begin the next piece at `read`, with the byte
/// before it as `previous`. `out` must have room for decoded_bound(in.size()).
Progress decode(Rules rules, std::string_view in, unsigned char previous, bool last, char* out);
Progress decode_reference(Rules rules, std::string_view in, unsigned char previous, bool last, char* out);

/// The encoder's position in a line between two calls.
struct Column {
    std::size_t characters = 0;  ///< written on the current line
};

/// Returns the most bytes that `encode` writes for `n` bytes of input.
std::size_t encoded_bound(std::size_t n, std::size_t line_length);

/// Encodes `in`, breaking a line with CR LF once it has at least `line_length` characters (so an escaped pair may make
/// it one longer); escapes only NUL, LF, CR and '='. Does not end the last line. Returns the bytes written.
std::size_t encode(std::string_view in, std::size_t line_length, Column& column, char* out);
std::size_t encode_reference(std::string_view in, std::size_t line_length, Column& column, char* out);

}  // namespace quill::codec::yenc
