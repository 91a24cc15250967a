#include "codec/recovery/decode.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace quill::codec;

// Decodes with the input in memory, or read piece by piece.
std::string decoded(const Attachment& attachment, std::string_view input, const ReadInput& read) {
    std::string out;
    const std::array inputs = {input};
    decode(
        attachment, inputs,
        [&](std::string_view bytes) {
            out += bytes;
            return true;
        },
        {}, read);
    return out;
}

}  // namespace

// Any bytes as a body in any format, in two ranges, the first perhaps quoted: the same result whichever way the input
// is read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    constexpr std::array formats = {Format::base64, Format::uu, Format::xx, Format::quoted_printable};
    const std::string_view input(reinterpret_cast<const char*>(data + 2), size - 2);
    const std::uint64_t cut = input.size() * data[1] / 256;
    Attachment attachment;
    attachment.format = formats[data[0] % formats.size()];
    const auto quote = static_cast<std::uint32_t>(data[0] / formats.size() % 4);
    attachment.body = {{0, cut, 0, quote}, {cut, input.size(), 0}};
    const ReadInput read = [&](std::uint32_t, std::uint64_t offset, char* out, std::size_t n) {
        return input.substr(offset).copy(out, n);
    };
    if (decoded(attachment, input, {}) != decoded(attachment, input, read)) std::abort();
    return 0;
}
