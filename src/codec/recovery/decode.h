#pragma once

#include "codec/attachment.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace quill::codec {

/// Takes decoded bytes, in order; returns false to stop.
using Write = std::function<bool(std::string_view)>;

/// Told now and then that the inputs before `offset` of input `source` are done with; returns false to stop.
using OnRead = std::function<bool(std::uint32_t source, std::uint64_t offset)>;

/// Decodes `attachment`, whose ranges lie in `inputs`, and says what came of it. What can be recovered is written;
/// every doubt is a problem of the outcome. Uses some hundred KiB whatever the sizes. The outcome means nothing where
/// `write` or `on_read` stopped it.
Outcome decode(const Attachment& attachment, std::span<const std::string_view> inputs, const Write& write,
               const OnRead& on_read = {});

/// The first bytes of the result, at most `most`.
std::string decode_first_bytes(const Attachment& attachment, std::span<const std::string_view> inputs,
                               std::size_t most);

/// Problems of one attachment that are kept; of further ones their number is told.
constexpr std::size_t most_problems = 100;

}  // namespace quill::codec
