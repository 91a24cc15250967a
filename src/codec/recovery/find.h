#pragma once

#include "codec/recovery/found_file.h"
#include "codec/recovery/sources.h"

#include <cstdint>
#include <functional>

namespace quill::codec {

/// Called periodically with the place that was reached in a text; return false to cancel.
using OnScanned = std::function<bool(std::uint64_t offset)>;

/// Encoded messages are followed to this depth.
constexpr unsigned deepest_encoded = 4;

/// The most texts of a run, encoded messages among them, that are looked through.
constexpr std::size_t most_texts = 10'000;

/// Finds what the user's file `source` holds once its wrappings are off, in its order; what lies in an encoded message
/// comes after it. The texts that come out of wrappings are added to `sources`. Fails with `cancelled` where
/// `on_scanned` asks for it.
Result<Found> find(Sources& sources, std::uint32_t source, Texts texts, const OnScanned& on_scanned = {});

}  // namespace quill::codec
