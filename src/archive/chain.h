#pragma once

#include "archive/ciphers/cipher.h"
#include "archive/methods/decompressor.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace quill::archive {

/// Receives the bytes of a member in order; returns false to stop the reading.
using Sink = std::function<bool(std::string_view)>;

/// The result of a run through the chain.
struct Passed {
    StreamState state = StreamState::running;      ///< at the end; `running` if the data end too early
    bool too_long = false;                         ///< there is more content than `most`
    bool stopped = false;                          ///< the sink refused the bytes
    std::uint64_t read = 0;                        ///< bytes of the data up to the end of the compressed stream
    std::optional<bool> authentic = std::nullopt;  ///< the cipher's verdict on all of the data, if they were read
};

/// Passes a member's data from the archive through cipher and method to a sink. Keeps its buffers from one member to
/// the next.
class Chain {
  public:
    /// Decrypts `data` (`cipher` may be null) and decompresses them into `sink`, `most` bytes at most. The data are
    /// always decrypted to their end, so that their code is checked, unless the sink stops.
    Passed run(std::string_view data, Cipher* cipher, Decompressor& method, std::uint64_t most, const Sink& sink);

  private:
    class Source;

    std::unique_ptr<char[]> plain_;  // decrypted
    std::unique_ptr<char[]> out_;
};

}  // namespace quill::archive
