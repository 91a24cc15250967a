#include "archive/methods/library_stream.h"
#include "archive/methods/methods.h"

#include <zlib.h>

namespace quill::archive {
namespace {

/// RFC 1951, by zlib.
class Deflated final : public Decompressor {
  public:
    Deflated() {
        constexpr int raw_deflate = -MAX_WBITS;
        ready_ = inflateInit2(&stream_, raw_deflate) == Z_OK;
    }
    ~Deflated() override {
        if (ready_) inflateEnd(&stream_);
    }

    Step step(std::string_view in, std::span<char> out) override {
        if (!ready_) return {StreamState::too_large};
        const LibraryStep<z_stream> step(stream_, in, out);
        const int result = inflate(&stream_, Z_NO_FLUSH);
        return step.result(state_of(result));
    }

  private:
    static StreamState state_of(int result) {
        if (result == Z_STREAM_END) return StreamState::ended;
        if (result == Z_MEM_ERROR) return StreamState::too_large;
        return result == Z_OK || result == Z_BUF_ERROR ? StreamState::running : StreamState::broken;
    }

    z_stream stream_ = {};
    bool ready_ = false;
};

}  // namespace

DecompressorPtr make_deflated(const StreamInfo&) {
    return std::make_unique<Deflated>();
}

}  // namespace quill::archive
