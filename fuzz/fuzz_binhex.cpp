#include "codec/recovery/decode.h"

#include <array>
#include <cstdint>

// Decodes any bytes as the body of a BinHex file, both forks.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quill::codec;
    const std::array inputs = {std::string_view(reinterpret_cast<const char*>(data), size)};
    Attachment attachment;
    attachment.format = Format::binhex;
    attachment.body = {{0, size, 0}};
    for (const bool resource : {false, true}) {
        attachment.resource_fork = resource;
        std::uint64_t written = 0;
        decode(attachment, inputs, [&](std::string_view bytes) {
            written += bytes.size();
            return true;
        });
    }
    return 0;
}
