#include "archive/methods/library_stream.h"
#include "archive/methods/methods.h"

#include <bzlib.h>

namespace quill::archive {
namespace {

/// Method 12, by libbz2: one stream, whose blocks have their own checksums.
class Bzip2 final : public Decompressor {
  public:
    Bzip2() { ready_ = BZ2_bzDecompressInit(&stream_, 0, 0) == BZ_OK; }
    ~Bzip2() override {
        if (ready_) BZ2_bzDecompressEnd(&stream_);
    }

    Step step(std::string_view in, std::span<char> out) override {
        if (!ready_) return {StreamState::too_large};
        const LibraryStep<bz_stream> step(stream_, in, out);
        const int result = BZ2_bzDecompress(&stream_);
        return step.result(state_of(result));
    }

  private:
    static StreamState state_of(int result) {
        if (result == BZ_STREAM_END) return StreamState::ended;
        if (result == BZ_MEM_ERROR) return StreamState::too_large;
        return result == BZ_OK ? StreamState::running : StreamState::broken;
    }

    bz_stream stream_ = {};
    bool ready_ = false;
};

}  // namespace

DecompressorPtr make_bzip2(const StreamInfo&) {
    return std::make_unique<Bzip2>();
}

}  // namespace quill::archive
