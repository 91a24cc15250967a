#pragma once

#include "codec/recovery/proof.h"
#include "report/problem.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The files that the scanner finds in a text, and the results of decoding them.
namespace quill::codec {

enum class Format : std::uint8_t {
    base64,  ///< MIME Base64, `begin-base64`, bare Base64
    uu,
    xx,
    binhex,  ///< BinHex 4.0
    yenc,
    quoted_printable,  ///< RFC 2045 6.7
    identity           ///< 7bit, 8bit or binary
};

/// Returns the name of a format as shown to people and in JSON: "MIME", "UUE", "XXE", "BinHex", "yEnc",
/// "quoted-printable", "plain".
std::string_view name_of(Format format);

using report::Grade;
using report::name_of;
using report::Problem;
using report::ProblemKind;
using report::Verdict;

/// Bytes [begin, end) of an input text.
struct Range {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::uint32_t source = 0;  ///< index of the input, if a result is joined from several
    std::uint32_t quote = 0;   ///< characters before each line that mark it as quoted and do not belong to it

    bool operator==(const Range&) const = default;
};

/// One encoded file found in a text: the place of its encoded bytes and the facts stated about it. Nothing is decoded
/// yet.
struct Attachment {
    std::string name;  ///< safe to use as a file name; never empty
    Format format = Format::identity;
    std::vector<Range> body;                        ///< the encoded bytes, in order, without headers and trailers
    std::optional<std::uint64_t> stated_size = {};  ///< bytes of the result, as the text states
    std::optional<std::uint16_t> stated_sum = {};   ///< BSD checksum of the result ("sum -r")
    std::optional<std::array<unsigned char, 16>> stated_md5 = {};  ///< of the result (Content-MD5, RFC 1864)
    Claim checked_sum = Claim::none;  ///< what the scan found of a checksum that covers all bytes of the result
    std::optional<std::uint64_t> stated_length = {};  ///< bytes of the body as it stands in the text (Content-Length)
    bool cut_off = false;           ///< the text ends where something should still mark the end of this body
    bool before_boundary = false;   ///< a boundary follows, and the line end before it is no part of the body
    bool keeps_blanks = false;      ///< UUE: blanks at the ends of lines are not lost, or none were written
    bool message_text = false;      ///< a text part without a file name: written only on request
    bool resource_fork = false;     ///< BinHex: the resource fork of the file before it; written only on request
    bool headless = false;          ///< BinHex: the part that identifies the bytes is missing; nothing is decoded
    bool dots_doubled = false;      ///< yEnc: its newsreader doubles dots; counts if the post states nothing better
    std::string content_type;       ///< lower case, without parameters; empty if the text has none
    std::vector<Problem> problems;  ///< found while scanning
    std::vector<std::uint32_t> copies_in;  ///< inputs with copies of its parts, which were left out
};

/// The result of decoding one attachment.
struct Outcome {
    Verdict verdict = Verdict::whole;  ///< what `proof` amounts to
    std::uint64_t size = 0;            ///< bytes written
    std::vector<Problem> problems;     ///< those of the scan and of the decoding, in the order of one input
    Proof proof = {};

    /// Adds a problem that was seen after the decoding, and decides the verdict again.
    void add(Problem problem);
};

}  // namespace quill::codec
