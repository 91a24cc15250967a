#pragma once

#include "codec/attachment.h"
#include "codec/yenc/yenc.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A yEnc post as found in a text: the lines `=ybegin`, `=ypart`, `=yend` (yEnc draft 1.3) and the data between them.
/// Numbers that are missing, negative, too large or invalid are absent here. A CRC may begin with 0x.
namespace quill::codec::yenc {

struct BeginLine {
    std::optional<std::uint64_t> part;   ///< number of this part, from 1
    std::optional<std::uint64_t> total;  ///< total number of parts
    std::optional<std::uint64_t> line;   ///< characters on a full line
    std::optional<std::uint64_t> size;   ///< bytes of the whole file
    std::string_view name;               ///< without surrounding blanks and quotes; empty if there is none
};

struct PartLine {
    std::optional<std::uint64_t> begin;  ///< number of its first byte in the file, from 1
    std::optional<std::uint64_t> end;    ///< number of its last byte
};

struct EndLine {
    std::optional<std::uint64_t> size;  ///< bytes of the part, or of a file in one piece
    std::optional<std::uint64_t> part;
    std::optional<std::uint32_t> pcrc32;  ///< CRC-32 of the part
    std::optional<std::uint32_t> crc32;   ///< CRC-32 of the whole file
    bool unreadable_crc = false;          ///< a CRC is stated that is not a number of at most 32 bits
    bool unreadable_size = false;         ///< a size is stated that is not a number
};

/// Parse a line; nullopt if it is not of that kind. A `=ybegin` must state its line length, size or name.
std::optional<BeginLine> parse_begin(std::string_view line);
std::optional<PartLine> parse_part(std::string_view line);
std::optional<EndLine> parse_end(std::string_view line);

/// Returns the value of up to 8 hexadecimal digits, or of 9 to 16 whose first ones only extend the sign of 32 bits.
std::optional<std::uint32_t> parse_crc(std::string_view digits);

/// One post. Offsets are into its text.
struct Post {
    BeginLine begin;
    std::optional<PartLine> part;
    std::optional<EndLine> end;  ///< absent if the post breaks off
    std::size_t data_begin = 0;  ///< the first byte after the header lines
    std::size_t data_end = 0;    ///< the `=yend` line, or the place where the data breaks off

    /// Returns true if the header is that of one part and the trailer that of another: posts joined without the lines
    /// between them.
    bool is_merged() const;

    /// Returns true if its lines show that this is a part of a file in several posts.
    bool is_part() const;

    /// Returns the expected size of the data: from `=ypart`, else `=yend`, else, for a whole file, `=ybegin`.
    std::optional<std::uint64_t> stated_size() const;

    /// Returns the size of the whole file from `=ybegin`; nullopt if that is only the size of the part.
    std::optional<std::uint64_t> file_size() const;

    /// Returns the CRC-32 of the whole file that a part states besides its own.
    std::optional<std::uint32_t> file_crc() const;

    /// Returns the expected CRC-32 of the data.
    std::optional<std::uint32_t> stated_crc() const;
};

/// Reads the lines around the data of the post in `text`, from its `=ybegin` to the end of its `=yend` or to where it
/// breaks off; nullopt if `text` begins with something else. Lines may end in CR LF, LF, CR or CR CR LF.
std::optional<Post> read_post(std::string_view text);

/// Returns true if there are lines of data that begin with a dot, and each of them begins with two: perhaps one was
/// added in transit, as NNTP (RFC 3977 3.1.1) and SMTP do.
bool dots_look_added(std::string_view text, const Post& post);

/// The result of decoding a post's data.
struct Data {
    std::uint64_t size = 0;  ///< bytes
    std::uint32_t crc = 0;   ///< their CRC-32
    bool even_rows = false;  ///< the rows were all of the same length; checked if no CRC is stated

    bool operator==(const Data&) const = default;
};

/// Receives decoded bytes, in order, and how much of the text is consumed; returns false to stop.
using TakeBytes = std::function<bool(std::string_view bytes, std::size_t read_to)>;

/// Returns true if dots must be removed from the lines that begin with two. It may read the text elsewhere.
using AskDotted = std::function<bool()>;

/// Decodes the data of `post` by the draft's rules, removing dots if `dotted` returns true; it is called once, at the
/// first line that begins with a dot: most data have none. Skips other lines that begin with `=y`. A post that breaks
/// off gives at most as many bytes as it states, as anything may follow it. Works in pieces of fixed size. Returns
/// nullopt if `take` stopped it.
std::optional<Data> decode_data(std::string_view text, const Post& post, const AskDotted& dotted,
                                const TakeBytes& take = {});
std::optional<Data> decode_data(std::string_view text, const Post& post, bool dotted, const TakeBytes& take = {});

/// Returns true if the data match the post: its CRC or, if it states none, its size.
bool agrees(const Post& post, const Data& data);

/// The result of checking a post's data.
struct Verification {
    std::vector<Problem> problems;  ///< offsets of the input count from the post's beginning
    bool vouched_for = false;       ///< a CRC matches or, if none is stated, all sizes do
    bool crc_agrees = false;        ///< the CRC of these bytes is stated, and matches
};

/// Compares `data` with the values in `post`. Any wrong size is a problem, and any wrong CRC; a matching CRC outweighs
/// wrong sizes.
Verification verify(const Post& post, const Data& data);

/// Returns the eight digits of `crc`, in lower case.
std::string hexadecimal(std::uint32_t crc);

}  // namespace quill::codec::yenc
