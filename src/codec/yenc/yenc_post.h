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

/// A yEnc post as it stands in a text: the lines `=ybegin`, `=ypart`, `=yend` (yEnc draft 1.3) and the data between
/// them. Numbers that are missing, negative, too large or no numbers at all are absent here. A CRC may begin with 0x.
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
    bool unreadable_crc = false;          ///< a CRC is stated that is not a number of at most 32 bits
    bool unreadable_size = false;         ///< a size is stated that is not a number
};

/// What a line says, or nullopt where it is not of that kind. A `=ybegin` must state its line length, size or name.
std::optional<BeginLine> parse_begin(std::string_view line);
std::optional<PartLine> parse_part(std::string_view line);
std::optional<EndLine> parse_end(std::string_view line);

/// The value of up to 8 hexadecimal digits, or of 9 to 16 whose first ones only extend the sign of 32 bits.
std::optional<std::uint32_t> parse_crc(std::string_view digits);

/// One post. Offsets are into its text.
struct Post {
    BeginLine begin;
    std::optional<PartLine> part;
    std::optional<EndLine> end;  ///< absent where the post breaks off
    std::size_t data_begin = 0;  ///< the first byte behind the header lines
    std::size_t data_end = 0;    ///< the `=yend` line, or where the data breaks off

    /// Whether the header is that of one part and the trailer that of another: posts that were put together, with the
    /// lines between them cut out.
    bool is_merged() const;

    /// Whether this is a part of a file in several posts, as far as its lines say.
    bool is_part() const;

    /// Bytes that the data should give: as `=ypart` says, else `=yend`, else, for a whole file, `=ybegin`.
    std::optional<std::uint64_t> stated_size() const;

    /// Bytes of the whole file, as `=ybegin` says; nullopt where that is the size of the part alone.
    std::optional<std::uint64_t> file_size() const;

    /// The CRC-32 of the whole file that a part states beside its own.
    std::optional<std::uint32_t> file_crc() const;

    /// The CRC-32 that the data should have.
    std::optional<std::uint32_t> stated_crc() const;
};

/// Reads the lines around the data of the post that `text` is, from its `=ybegin` to behind its `=yend` or to where it
/// breaks off. nullopt where it begins otherwise. Lines may end in CR LF, LF, CR or CR CR LF.
std::optional<Post> read_post(std::string_view text);

/// Whether there are lines of data that begin with a dot, and each of them begins with two: perhaps one was added on
/// the way, as NNTP (RFC 3977 3.1.1) and SMTP do.
bool dots_look_added(std::string_view text, const Post& post);

/// What the data of a post came to.
struct Data {
    std::uint64_t size = 0;  ///< bytes
    std::uint32_t crc = 0;   ///< their CRC-32
    bool even_rows = false;  ///< the rows were seen to be of one length; watched where no CRC is stated

    bool operator==(const Data&) const = default;
};

/// Takes bytes decoded, in order, and how much of the text is used up; false to stop.
using TakeBytes = std::function<bool(std::string_view bytes, std::size_t read_to)>;

/// Whether dots are to be taken off the lines that begin with two. It may read the text elsewhere.
using AskDotted = std::function<bool()>;

/// Decodes the data of `post` by the draft's rules, with dots taken off where `dotted`, which is asked once, when the
/// first line that begins with a dot is met: most data have none. Other lines that begin with `=y` are passed over. A
/// post that breaks off gives no more bytes than it states, as anything may stand behind it. Works in pieces of fixed
/// size. nullopt where `take` stopped it.
std::optional<Data> decode_data(std::string_view text, const Post& post, const AskDotted& dotted,
                                const TakeBytes& take = {});
std::optional<Data> decode_data(std::string_view text, const Post& post, bool dotted, const TakeBytes& take = {});

/// Whether the data are what the post states: its CRC agrees or, where it states none, its size.
bool agrees(const Post& post, const Data& data);

/// What is said of a post's data.
struct Verification {
    std::vector<Problem> problems;  ///< offsets of the input count from the post's beginning
    bool vouched_for = false;       ///< a CRC agrees or, where none is stated, all sizes do
    bool crc_agrees = false;        ///< the CRC of these bytes is stated, and agrees
};

/// Holds `data` against what `post` states. Any size that disagrees is a problem, and any CRC; a CRC that agrees
/// outweighs sizes that don't.
Verification verify(const Post& post, const Data& data);

/// The eight digits of `crc`, in lower case.
std::string hexadecimal(std::uint32_t crc);

}  // namespace quill::codec::yenc
