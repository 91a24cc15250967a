#pragma once

#include "codec/attachment.h"
#include "codec/yenc.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A yEnc post as it stands in a text: the lines `=ybegin`, `=ypart`, `=yend` (yEnc draft 1.3) and the data between
/// them. Numbers that are missing, negative, too large or no numbers at all are absent here.
namespace quill::codec::yenc {

struct BeginLine {
    std::optional<std::uint64_t> part;   ///< number of this part, from 1
    std::optional<std::uint64_t> total;  ///< how many parts there are
    std::optional<std::uint64_t> line;   ///< characters on a full line
    std::optional<std::uint64_t> size;   ///< bytes of the whole file
    std::string_view name;               ///< without blanks and quotes around it; empty where there is none
};

struct PartLine {
    std::optional<std::uint64_t> begin;  ///< number of its first byte in the file, from 1
    std::optional<std::uint64_t> end;    ///< and of its last
};

struct EndLine {
    std::optional<std::uint64_t> size;  ///< bytes of the part, or of a file in one piece
    std::optional<std::uint64_t> part;
    std::optional<std::uint32_t> pcrc32;  ///< CRC-32 of the part
    std::optional<std::uint32_t> crc32;   ///< CRC-32 of the whole file
    bool unreadable_crc = false;          ///< a CRC is stated that is no number of at most 32 bits
};

/// What a line says, or nullopt where it is not of that kind. A `=ybegin` must state its line length, size or name.
std::optional<BeginLine> parse_begin(std::string_view line);
std::optional<PartLine> parse_part(std::string_view line);
std::optional<EndLine> parse_end(std::string_view line);

/// The value of up to 8 hexadecimal digits, or of 9 to 16 whose first ones only extend the sign of 32 bits.
std::optional<std::uint32_t> parse_crc(std::string_view digits);

/// One post. Offsets are into the text that it was read from.
struct Post {
    BeginLine begin;
    std::optional<PartLine> part;
    std::optional<EndLine> end;   ///< absent where the post breaks off
    std::size_t data_begin = 0;   ///< the first byte behind the header lines
    std::size_t data_end = 0;     ///< the `=yend` line, or where the data breaks off
    std::size_t post_end = 0;     ///< behind the `=yend` line and its line end, or `data_end`
    bool may_be_stuffed = false;  ///< each line that begins with a dot begins with two: perhaps one was added

    /// Whether the header is that of one part and the trailer that of another: posts that were put together, with the
    /// lines between them cut out.
    bool is_merged() const;

    /// Whether this is a part of a file in several posts, as far as its lines say.
    bool is_part() const;

    /// Bytes that the data should give: as `=ypart` says, else `=yend`, else, for a whole file, `=ybegin`.
    std::optional<std::uint64_t> stated_size() const;

    /// The CRC-32 that the data should have.
    std::optional<std::uint32_t> stated_crc() const;
};

/// Reads the post whose `=ybegin` stands at `at`, the beginning of a line; nullopt where that line is none. It ends
/// with its `=yend`, else at the next `=ybegin`, at a line of a single dot, or with the text. Lines may end in CR LF,
/// LF or CR.
std::optional<Post> read_post(std::string_view text, std::size_t at);

/// What the data of a post came to.
struct Data {
    std::uint64_t size = 0;  ///< bytes
    std::uint32_t crc = 0;   ///< their CRC-32

    bool operator==(const Data&) const = default;
};

/// Takes the bytes decoded, in order; false to stop.
using TakeBytes = std::function<bool(std::string_view)>;

/// Decodes the data of `post` in `text`, at most `limit` bytes, by the draft's rules, with dots taken off where
/// `dotted`. Other lines that begin with `=y` are passed over. Works in pieces of fixed size. nullopt where `take`
/// stopped it.
std::optional<Data> decode_data(std::string_view text, const Post& post, bool dotted, const TakeBytes& take = {},
                                std::uint64_t limit = std::numeric_limits<std::uint64_t>::max());

/// Whether the data are what the post states: its CRC agrees or, where it states none, its size.
bool agrees(const Post& post, const Data& data);

/// What is said of a post's data.
struct Verification {
    std::vector<Problem> problems;
    bool vouched_for = false;  ///< a CRC agrees or, where none is stated, all sizes do
    bool complete = true;      ///< it has its trailer
};

/// Holds `data`, which begins at `at_output` of a result, against what `post`, which begins at `at_input` of an input,
/// states. Any size that disagrees and any CRC is a problem; a CRC that agrees outweighs sizes that don't.
Verification verify(const Post& post, const Data& data, std::uint64_t at_input, std::uint64_t at_output);

/// The eight digits of `crc`, in lower case.
std::string hexadecimal(std::uint32_t crc);

}  // namespace quill::codec::yenc
