#include "codec/recovery/decode.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

namespace {

using namespace quill::codec;

std::string decoded(const Attachment& attachment, std::span<const std::string_view> inputs) {
    std::string out;
    decode(attachment, inputs, [&](std::string_view bytes) {
        out += bytes;
        return true;
    });
    return out;
}

}  // namespace

// Decodes any bytes as a body in any format, in two ranges, the first perhaps quoted: decode_first_bytes returns what a
// whole run writes first.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    constexpr std::array formats = {Format::base64, Format::uu, Format::xx, Format::quoted_printable};
    constexpr std::size_t looked_at = 64;
    const std::array inputs = {std::string_view(reinterpret_cast<const char*>(data + 2), size - 2)};
    const std::uint64_t cut = inputs[0].size() * data[1] / 256;
    Attachment attachment;
    attachment.format = formats[data[0] % formats.size()];
    const auto quote = static_cast<std::uint32_t>(data[0] / formats.size() % 4);
    attachment.body = {{0, cut, 0, quote}, {cut, inputs[0].size(), 0}};
    const std::string first = decode_first_bytes(attachment, inputs, looked_at);
    if (first != decoded(attachment, inputs).substr(0, looked_at)) std::abort();
    return 0;
}
