#include "archive/methods/compressors.h"

#include "archive/methods/library_stream.h"
#include "archive/methods/lzma_stream.h"

#include <algorithm>
#include <array>
#include <zlib.h>
#include <zstd.h>

namespace quill::archive {
namespace {

/// RFC 1951, by zlib.
class Deflate final : public Compressor {
  public:
    explicit Deflate(int level) {
        constexpr int raw_deflate = -MAX_WBITS, memory_level = 8;
        ready_ = deflateInit2(&stream_, level, Z_DEFLATED, raw_deflate, memory_level, Z_DEFAULT_STRATEGY) == Z_OK;
    }
    ~Deflate() override {
        if (ready_) deflateEnd(&stream_);
    }

    Step step(std::string_view in, std::span<char> out, bool last) override {
        if (!ready_) return {StreamState::broken};
        const LibraryStep<z_stream> step(stream_, in, out);
        const int result = deflate(&stream_, last ? Z_FINISH : Z_NO_FLUSH);
        if (result == Z_STREAM_END) return step.result(StreamState::ended);
        return step.result(result == Z_OK || result == Z_BUF_ERROR ? StreamState::running : StreamState::broken);
    }

  private:
    z_stream stream_ = {};
    bool ready_ = false;
};

/// One frame (RFC 8878) with a checksum.
class Zstd final : public Compressor {
  public:
    explicit Zstd(int level) {
        if (!context_) return;
        ZSTD_CCtx_setParameter(context_.get(), ZSTD_c_compressionLevel, level);
        ZSTD_CCtx_setParameter(context_.get(), ZSTD_c_checksumFlag, 1);
    }

    Step step(std::string_view in, std::span<char> out, bool last) override {
        if (!context_) return {StreamState::broken};
        ZSTD_inBuffer input{in.data(), in.size(), 0};
        ZSTD_outBuffer output{out.data(), out.size(), 0};
        const std::size_t left =
            ZSTD_compressStream2(context_.get(), &output, &input, last ? ZSTD_e_end : ZSTD_e_continue);
        if (ZSTD_isError(left) != 0) return {StreamState::broken};
        return {last && left == 0 ? StreamState::ended : StreamState::running, input.pos, output.pos};
    }

  private:
    struct FreeContext {
        void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
    };

    std::unique_ptr<ZSTD_CCtx, FreeContext> context_{ZSTD_createCCtx()};
};

/// An .xz stream with a CRC-32.
class XzWriter final : public Compressor {
  public:
    explicit XzWriter(int level) {
        ready_ = lzma_easy_encoder(&lzma_.stream, static_cast<std::uint32_t>(level), LZMA_CHECK_CRC32) == LZMA_OK;
    }

    Step step(std::string_view in, std::span<char> out, bool last) override {
        return ready_ ? lzma_.step(in, out, last ? LZMA_FINISH : LZMA_RUN) : Step{StreamState::broken};
    }

  private:
    LzmaStream lzma_;
    bool ready_ = false;
};

template <class Writer>
std::unique_ptr<Compressor> make(int level) {
    return std::make_unique<Writer>(std::clamp(level, 1, 9));
}

constexpr auto table = std::to_array<CompressionMethod>({
    {0, 20, "store"},
    {8, 20, "deflate", make<Deflate>},
    {93, 63, "zstd", make<Zstd>},
    {95, 63, "xz", make<XzWriter>},
});

}  // namespace

std::span<const CompressionMethod> compression_methods() {
    return table;
}

const CompressionMethod* find_compression(std::uint16_t number) {
    const auto found = std::find_if(table.begin(), table.end(), [&](const auto& row) { return row.number == number; });
    return found == table.end() ? nullptr : &*found;
}

}  // namespace quill::archive
