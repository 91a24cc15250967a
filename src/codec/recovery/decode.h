#pragma once

#include "codec/attachment.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace quill::codec {

/// Receives decoded bytes, in order; returns false to stop.
using Write = std::function<bool(std::string_view)>;

/// Is called periodically when the bytes before `offset` of input `source` are no longer needed; returns false to stop.
using OnRead = std::function<bool(std::uint32_t source, std::uint64_t offset)>;

/// Decodes `attachment`, whose ranges are in `inputs`, and returns the outcome. Writes everything that can be
/// recovered; every doubt is a problem of the outcome. Uses some hundred KiB whatever the sizes. The outcome is
/// meaningless if `write` or `on_read` stopped it.
Outcome decode(const Attachment& attachment, std::span<const std::string_view> inputs, const Write& write,
               const OnRead& on_read = {});

/// Returns the first bytes of the result, at most `most`.
std::string decode_first_bytes(const Attachment& attachment, std::span<const std::string_view> inputs,
                               std::size_t most);

/// Problems of one attachment that are stored; further ones are only counted.
constexpr std::size_t most_problems = 100;

}  // namespace quill::codec
