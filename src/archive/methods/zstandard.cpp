#include "archive/methods/methods.h"

#include <zstd.h>
#include <zstd_errors.h>

namespace quill::archive {
namespace {

struct FreeStream {
    void operator()(ZSTD_DStream* stream) const { ZSTD_freeDStream(stream); }
};

/// Methods 93 and 20 (RFC 8878), by libzstd: one or more frames. Rejects a window of more than 128 MiB.
class Zstandard final : public Decompressor {
  public:
    Step step(std::string_view in, std::span<char> out) override {
        if (!stream_) return {StreamState::too_large};
        if (in.empty() && between_frames_) return {StreamState::complete};
        ZSTD_inBuffer input{in.data(), in.size(), 0};
        ZSTD_outBuffer output{out.data(), out.size(), 0};
        const std::size_t result = ZSTD_decompressStream(stream_.get(), &output, &input);
        if (ZSTD_isError(result) != 0) return {state_of_error(result), 0, 0};
        between_frames_ = result == 0;
        frames_ = frames_ || between_frames_;
        return {between_frames_ ? StreamState::complete : StreamState::running, input.pos, output.pos};
    }

  private:
    StreamState state_of_error(std::size_t result) const {
        const ZSTD_ErrorCode code = ZSTD_getErrorCode(result);
        if (code == ZSTD_error_memory_allocation || code == ZSTD_error_frameParameter_windowTooLarge) {
            return StreamState::too_large;
        }
        // Bytes after a frame that do not begin another are not part of the stream.
        return frames_ && code == ZSTD_error_prefix_unknown ? StreamState::ended : StreamState::broken;
    }

    std::unique_ptr<ZSTD_DStream, FreeStream> stream_{ZSTD_createDStream()};
    bool between_frames_ = false;
    bool frames_ = false;  // one has ended
};

}  // namespace

DecompressorPtr make_zstandard(const StreamInfo&) {
    return std::make_unique<Zstandard>();
}

}  // namespace quill::archive
