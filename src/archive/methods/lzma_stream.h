#pragma once

#include "archive/methods/library_stream.h"

#include <cstdint>
#include <lzma.h>

namespace quill::archive {

/// The largest amount of memory that a stream of LZMA or XZ may request.
constexpr std::uint64_t most_lzma_memory = 1U << 30U;

/// A stream of liblzma that is freed with its owner.
struct LzmaStream {
    LzmaStream() = default;
    LzmaStream(const LzmaStream&) = delete;
    LzmaStream& operator=(const LzmaStream&) = delete;
    ~LzmaStream() { lzma_end(&stream); }

    Step step(std::string_view in, std::span<char> out, lzma_action action = LZMA_RUN) {
        const LibraryStep<lzma_stream> step(stream, in, out);
        const lzma_ret result = lzma_code(&stream, action);
        return step.result(state_of(result));
    }

    static StreamState state_of(lzma_ret result) {
        if (result == LZMA_STREAM_END) return StreamState::ended;
        if (result == LZMA_MEM_ERROR || result == LZMA_MEMLIMIT_ERROR) return StreamState::too_large;
        // LZMA_BUF_ERROR: two calls without progress, for lack of input or room.
        return result == LZMA_OK || result == LZMA_BUF_ERROR ? StreamState::running : StreamState::broken;
    }

    lzma_stream stream = LZMA_STREAM_INIT;
};

}  // namespace quill::archive
