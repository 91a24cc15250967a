#include "archive/methods/methods.h"

#include <algorithm>

namespace quill::archive {
namespace {

class Stored final : public Decompressor {
  public:
    Step step(std::string_view in, std::span<char> out) override {
        const std::size_t size = std::min(in.size(), out.size());
        std::copy_n(in.data(), size, out.data());
        return {StreamState::complete, size, size};
    }
};

}  // namespace

DecompressorPtr make_stored(const StreamInfo&) {
    return std::make_unique<Stored>();
}

}  // namespace quill::archive
