#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

/// The engine for archives: the processing of a member's bytes.
namespace quill::archive {

/// The state of a compressed stream after a step.
enum class StreamState : std::uint8_t {
    running,    ///< It continues: more input or more room is needed.
    complete,   ///< It may end here; further input continues it.
    ended,      ///< It ended with its own mark or at its stated size.
    broken,     ///< The input is not a stream of this method.
    too_large,  ///< It needs more memory than is allowed.
};

/// The result of one step.
struct Step {
    StreamState state = StreamState::running;
    std::size_t read = 0;     ///< bytes of input used
    std::size_t written = 0;  ///< bytes of output written
};

/// Decompresses one method.
///
/// A stream may be cut into steps at any byte. Its memory is bounded by the method, whatever the stream's headers say.
class Decompressor {
  public:
    Decompressor() = default;
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;
    virtual ~Decompressor() = default;

    /// Decompresses from `in` into `out` until one of them is used up or the stream ends. Uses all of `in` unless the
    /// stream ends or `out` is full. An empty `in` writes pending output. `out` has room for at least one byte.
    /// REQUIRES: no earlier step has ended the stream or found it broken or too large.
    virtual Step step(std::string_view in, std::span<char> out) = 0;
};

/// The facts about a compressed stream in its member's header.
struct StreamInfo {
    std::uint16_t method = 0;
    std::uint16_t flags = 0;                           ///< general purpose bits (APPNOTE 4.4.4)
    std::optional<std::uint64_t> size = std::nullopt;  ///< bytes of the content, if known
};

using DecompressorPtr = std::unique_ptr<Decompressor>;

}  // namespace quill::archive
