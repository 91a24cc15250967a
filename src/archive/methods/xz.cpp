#include "archive/methods/lzma_stream.h"
#include "archive/methods/methods.h"

namespace quill::archive {
namespace {

/// Method 95, by liblzma: one .xz stream, with its own checksums.
class Xz final : public Decompressor {
  public:
    Xz() { ready_ = lzma_stream_decoder(&lzma_.stream, most_lzma_memory, 0) == LZMA_OK; }

    Step step(std::string_view in, std::span<char> out) override {
        return ready_ ? lzma_.step(in, out) : Step{StreamState::too_large};
    }

  private:
    LzmaStream lzma_;
    bool ready_ = false;
};

}  // namespace

DecompressorPtr make_xz(const StreamInfo&) {
    return std::make_unique<Xz>();
}

}  // namespace quill::archive
