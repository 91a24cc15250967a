#pragma once

#include "codec/recovery/decode_run.h"
#include "codec/recovery/found_file.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// Files whose parts came in several yEnc posts, in whatever order and in whatever inputs.
///
/// A yEnc attachment's body is its posts, each from its `=ybegin` to behind its `=yend`, as each says where its part
/// belongs and what it should give.
namespace quill::codec::yenc {

/// Makes one file of those whose posts are parts of one: of the same name and size. It stands where the first of them
/// stood. Posts that state the same bytes of the file with different checksums are of different files.
void join_posts(std::vector<FoundFile>& files, std::span<const std::string_view> inputs);

/// The most zeros that stand for parts that are missing, whatever the parts say: this many bytes, or this many times
/// the size of the posts. Where more would be needed the parts are put one behind the other.
constexpr std::uint64_t most_zeros = std::uint64_t{64} << 20U;
constexpr std::uint64_t most_zeros_per_byte = 64;

}  // namespace quill::codec::yenc

namespace quill::codec {

/// Decodes a yEnc attachment, part by part in the file's order.
///
/// Parts go where their `=ypart` says; one that is missing leaves a gap of zeros, and of parts that overlap the bytes
/// of the first are kept; both are problems. Of a part that is there twice the first good one is taken. A part that is
/// all there is of its file stands at the beginning. Dots added to lines are taken off where the size or the checksum
/// then agrees.
void decode_yenc(const Attachment& attachment, std::span<const std::string_view> inputs, const OnRead& on_read,
                 Sink& sink);

}  // namespace quill::codec
