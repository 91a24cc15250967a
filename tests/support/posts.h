#pragma once

#include "support/random.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Posts with known contents, written row by row without the program's own encoders.
namespace quill::tests {

enum class RowKind : std::uint8_t { head, begin, data, end, boundary, words };

struct Row {
    RowKind kind = RowKind::words;
    std::string text;
    unsigned file = 0;       ///< the attachment of the row
    std::string end = "\n";  ///< its line end
};
using Rows = std::vector<Row>;

/// The transfer encoding that a part's header states for a way to write a file.
enum class Transfer : std::uint8_t { none, base64, quoted_printable };

/// A way to write a file as rows, and to read rows without any tolerance.
struct Writing {
    std::string_view name;
    std::string_view family;  ///< the formats that share its faults
    Transfer transfer = Transfer::none;
    Rows (*write)(std::string_view bytes, std::string_view name) = nullptr;
    /// Returns the contents of one attachment's rows if `write` would write some file in exactly this form, and nothing
    /// in them shows that this isn't the original. Null if only a checksum confirms the original.
    std::optional<std::string> (*read)(std::span<const Row> rows) = nullptr;
};

std::span<const Writing> writings();
const Writing& writing(std::string_view name);

/// The text around an attachment.
struct Container {
    std::string_view name;
    bool takes_fields = false;    ///< it has header fields for a body, to declare Base64 and quoted-printable
    bool needs_transfer = false;  ///< it is only for bodies with a transfer encoding
    std::size_t files = 1;
    Rows (*wrap)(const Writing& writing, std::span<const Rows> files) = nullptr;
};

std::span<const Container> containers();

/// Returns true if the container suits files in this writing.
bool fits(const Container& container, const Writing& writing);

/// Returns bytes of one of several kinds: noise, text, zeros, a multiple of a full row. Only text for quoted-printable.
std::string payload(Random& random, const Writing& writing);

std::string bytes_of(const Rows& rows);

/// Returns `text` as rows of `kind`, cut at line ends.
Rows rows_of(RowKind kind, std::string_view text);

std::uint32_t crc32_of(std::string_view bytes);

/// One yEnc part: bytes [begin, begin + bytes.size()) of a file.
struct YencPart {
    std::string_view name;
    std::string_view bytes;
    std::size_t begin = 0;
    std::size_t size = 0;  ///< of the file
    unsigned number = 0;   ///< 0: the file is in one part
    unsigned total = 0;
    std::optional<std::uint32_t> whole_crc = {};  ///< stated in the trailer
    bool crc = true;                              ///< of the part
};
Rows yenc_part(const YencPart& part);

/// Returns the rows of data of UUE and XXE with full rows of `full` bytes, without `begin` and the end lines.
Rows sixbit_rows(std::string_view alphabet, std::string_view bytes, std::size_t full = 45);
Rows base64_rows(std::string_view bytes, std::size_t width = 76);

inline constexpr std::string_view uu_grave = "`!\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_";
inline constexpr std::string_view uu_blank = " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_";
inline constexpr std::string_view xx_alphabet = "+-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
inline constexpr std::string_view base64_alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace quill::tests
