#pragma once

#include "codec/recovery/found_file.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

/// TNEF streams (MS-OXTNEF), which come as "winmail.dat".
namespace quill::codec::tnef {

/// How many bytes `has_signature` looks at.
constexpr std::size_t signature_size = 4;

/// Messages within messages are read to this depth.
constexpr unsigned deepest = 4;

/// Returns true where `bytes` begin a TNEF stream: 0x223E9F78, low byte first.
bool has_signature(std::string_view bytes);

/// What a stream holds.
struct Contents {
    std::vector<FoundFile> files;    ///< attachments in their order, those of messages within included, and texts
    std::optional<Problem> trouble;  ///< the first reason why not all that it holds is among the files
};

/// What `read` needs to know of the text that is the stream.
struct Place {
    std::uint32_t source = 0;                                ///< its number, which the ranges of the files name
    std::size_t most = 0;                                    ///< the most files to list
    std::function<bool(std::uint64_t offset)> on_read = {};  ///< called for each attribute; return false to cancel
};

/// Lists the attachments of the stream `bytes`, which has the signature. The bytes of each are a range of the stream.
/// The 16-bit sum of each attribute is checked: `checked_sum` and `bad_sum` of a file report what came of it, and a
/// file at which the stream breaks off has the problem `cut_off`.
Contents read(std::string_view bytes, const Place& place);

}  // namespace quill::codec::tnef
