#include "codec/tnef/tnef.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

/// Any bytes as a TNEF stream: what is listed lies within it, and is at most what was asked for.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quill::codec;
    const std::string stream = "\x78\x9F\x3E\x22" + std::string(reinterpret_cast<const char*>(data), size);
    const tnef::Contents contents = tnef::read(stream, {.source = 0, .most = 50});
    if (contents.files.size() > 50) std::abort();
    for (const FoundFile& file : contents.files) {
        for (const Range& range : file.attachment.body) {
            if (range.begin > range.end || range.end > stream.size()) std::abort();
        }
    }
    return 0;
}
