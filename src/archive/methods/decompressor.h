#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

/// The engine for archives: what is done to a member's bytes.
namespace quill::archive {

/// Where a compressed stream is after a step.
enum class StreamState : std::uint8_t {
    running,    ///< It goes on: more input or more room is needed.
    complete,   ///< It may end here; input that follows continues it.
    ended,      ///< It ended by its own mark or at its stated size.
    broken,     ///< The input is not a stream of this method.
    too_large,  ///< It needs more memory than is allowed.
};

/// What one step did.
struct Step {
    StreamState state = StreamState::running;
    std::size_t read = 0;     ///< bytes of the input that were used
    std::size_t written = 0;  ///< bytes of the output that were filled
};

/// Undoes one compression method.
///
/// A stream may be cut into steps at any byte. Its memory is bounded by the method, whatever the stream's headers say.
class Decompressor {
  public:
    Decompressor() = default;
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;
    virtual ~Decompressor() = default;

    /// Decompresses from `in` into `out` until one of them is used up or the stream ends. Takes all of `in` unless the
    /// stream ends or `out` is full. An empty `in` gives out what is still waiting. `out` has room for a byte at least.
    /// REQUIRES: no step before it has ended the stream or found it broken or too large.
    virtual Step step(std::string_view in, std::span<char> out) = 0;
};

/// What a member's header says about its compressed stream.
struct StreamInfo {
    std::uint16_t method = 0;
    std::uint16_t flags = 0;                           ///< general purpose bits (APPNOTE 4.4.4)
    std::optional<std::uint64_t> size = std::nullopt;  ///< bytes of the content, where they are known
};

using DecompressorPtr = std::unique_ptr<Decompressor>;

}  // namespace quill::archive
