#pragma once

#include "codec/recovery/decode_run.h"
#include "codec/recovery/found_file.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// Files whose parts are in several yEnc posts, in any order and in any inputs.
///
/// A yEnc attachment's body is its posts, each from its `=ybegin` to the end of its `=yend`, as each states the place
/// of its part and the expected result.
namespace quill::codec::yenc {

/// Makes one file of posts that are parts of one: of the same name and size. It takes the place of the first of them.
/// Posts that state different checksums for the same bytes belong to different files.
void join_posts(std::vector<FoundFile>& files, std::span<const std::string_view> inputs);

/// The most zeros that replace missing parts, whatever the parts state: this many bytes, or this many times the size of
/// the posts. If more would be needed, the parts are joined without gaps.
constexpr std::uint64_t most_zeros = std::uint64_t{64} << 20U;
constexpr std::uint64_t most_zeros_per_byte = 64;

}  // namespace quill::codec::yenc

namespace quill::codec {

/// Decodes a yEnc attachment, part by part in file order.
///
/// Parts go where their `=ypart` says; a missing one leaves a gap of zeros, and of overlapping parts the bytes of the
/// first are kept; both are problems. Of duplicate parts the first good one is used. A file's only part is placed at
/// the beginning. Dots added to lines are removed if the size or the checksum then matches.
void decode_yenc(const Attachment& attachment, std::span<const std::string_view> inputs, const OnRead& on_read,
                 Sink& sink);

}  // namespace quill::codec
