#pragma once

#include "codec/attachment.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

/// Files whose parts came in several yEnc posts, in whatever order and in whatever inputs.
///
/// A yEnc attachment's body is its posts, each from its `=ybegin` to behind its `=yend`, as each says where its part
/// belongs and what it should give. `inputs` are the texts that the ranges' sources count.
namespace quill::codec::yenc {

/// Makes one attachment of those whose posts are parts of one file: of the same name and size. It stands where the
/// first of them stood. Posts that state the same bytes of the file with different checksums are of different files.
void join_parts(std::span<const std::string_view> inputs, std::vector<Attachment>& attachments);

/// Takes decoded bytes at their place in the file, which is mostly behind those before; false to stop.
using WriteAt = std::function<bool(std::uint64_t offset, std::string_view bytes)>;

/// Decodes a yEnc attachment, part by part in the file's order, through `write`; without it, only checks it.
///
/// Parts go where their `=ypart` says; a part that is missing leaves a gap, which is a problem, as are parts that
/// overlap. Of a part that is there twice the first good one is taken. A part that is all there is of its file goes to
/// the beginning. A gap that would be out of all proportion to the input is left out. Dots added to lines are taken off
/// where the size or the checksum then agrees. Stops early where `write` says so; the outcome is then worthless.
Outcome decode_file(std::span<const std::string_view> inputs, const Attachment& attachment, const WriteAt& write = {});

}  // namespace quill::codec::yenc
