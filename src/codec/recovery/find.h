#pragma once

#include "codec/recovery/found_file.h"
#include "codec/recovery/sources.h"

#include <cstdint>
#include <functional>

namespace quill::codec {

/// Is called periodically with the place reached in a text; returns false to cancel.
using OnScanned = std::function<bool(std::uint64_t offset)>;

/// Encoded messages are followed to this depth.
constexpr unsigned deepest_encoded = 4;

/// The most texts of a run that are searched, including encoded messages.
constexpr std::size_t most_texts = 10'000;

/// Finds the contents of the user's file `source` after unwrapping, in its order; the contents of an encoded message
/// come after it. Adds the unwrapped texts to `sources`. Fails with `cancelled` if `on_scanned` returns false.
Result<Found> find(Sources& sources, std::uint32_t source, Texts texts, const OnScanned& on_scanned = {});

}  // namespace quill::codec
