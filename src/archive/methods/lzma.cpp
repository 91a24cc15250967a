#include "archive/methods/lzma_stream.h"
#include "archive/methods/methods.h"

#include <algorithm>
#include <limits>
#include <string>

namespace quill::archive {
namespace {

constexpr std::uint16_t end_marker_flag = 1U << 1U;  // APPNOTE 4.4.4, bit 1
constexpr std::size_t before_properties = 4;         // version of the encoder, and the size of the properties
constexpr std::size_t least_properties = 5;          // one byte of lc, lp and pb, four of the dictionary's size
constexpr std::uint64_t size_unknown = std::numeric_limits<std::uint64_t>::max();

std::uint32_t byte_at(const std::string& bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]);
}

/// Method 14 (APPNOTE 5.8): a short header, then a raw LZMA1 stream, by liblzma.
class Lzma final : public Decompressor {
  public:
    explicit Lzma(const StreamInfo& info)
        : size_(info.size.value_or(size_unknown)), has_marker_((info.flags & end_marker_flag) != 0) {}

    Step step(std::string_view in, std::span<char> out) override {
        const std::size_t taken = take_header(in);
        in.remove_prefix(taken);
        if (header_.size() < header_size()) return {StreamState::running, taken, 0};
        if (!begun_) {
            begun_ = true;
            if (const StreamState begun = begin(); begun != StreamState::running) return {begun, taken, 0};
        }
        Step step = lzma_.step(in, out);
        step.read += taken;
        return step;
    }

  private:
    std::size_t header_size() const {
        if (header_.size() < before_properties) return before_properties;
        return before_properties +
               std::max<std::size_t>(byte_at(header_, 2) | byte_at(header_, 3) << 8U, least_properties);
    }

    std::size_t take_header(std::string_view in) {
        std::size_t taken = 0;
        while (header_.size() < header_size() && taken < in.size()) {
            const std::size_t part = std::min(header_size() - header_.size(), in.size() - taken);
            header_.append(in.substr(taken, part));
            taken += part;
        }
        return taken;
    }

    /// Sets the decoder up from the properties (lc, lp, pb and dictionary size, as in an .lzma file).
    StreamState begin() {
        const std::uint32_t packed = byte_at(header_, 4);
        if (packed >= 9 * 5 * 5) return StreamState::broken;
        lzma_options_lzma options = {};
        options.lc = packed % 9;
        options.lp = packed / 9 % 5;
        options.pb = packed / 45;
        std::uint64_t dictionary = 0;
        for (std::size_t i = 0; i < 4; ++i) dictionary |= std::uint64_t{byte_at(header_, 5 + i)} << (8 * i);
        // A dictionary larger than the content is never filled.
        dictionary = std::clamp<std::uint64_t>(dictionary, LZMA_DICT_SIZE_MIN,
                                               std::max<std::uint64_t>(size_, LZMA_DICT_SIZE_MIN));
        if (dictionary > most_lzma_memory) return StreamState::too_large;
        options.dict_size = static_cast<std::uint32_t>(dictionary);
        options.ext_flags = LZMA_LZMA1EXT_ALLOW_EOPM;
        lzma_set_ext_size(options, has_marker_ ? size_unknown : size_);
        const lzma_filter filters[] = {{LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
        const lzma_ret result = lzma_raw_decoder(&lzma_.stream, filters);
        return result == LZMA_OPTIONS_ERROR ? StreamState::broken : LzmaStream::state_of(result);
    }

    std::uint64_t size_;
    bool has_marker_;
    bool begun_ = false;
    std::string header_;
    LzmaStream lzma_;
};

}  // namespace

DecompressorPtr make_lzma(const StreamInfo& info) {
    return std::make_unique<Lzma>(info);
}

}  // namespace quill::archive
