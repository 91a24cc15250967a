#include "encoder/merge.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// The parts of a post are inside it, one after another, and ordered by number.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quill::encoder;
    const std::string_view post(reinterpret_cast<const char*>(data), size);
    const auto parts = find_parts(post, 0);
    std::uint64_t end = 0;
    for (const YencPart& part : parts) {
        if (part.head < end || part.data < part.head || part.end < part.data || part.end > size) std::abort();
        end = part.end;
    }
    const auto series = ordered(parts, parts.size());
    if (series.size() > parts.size()) std::abort();
    for (std::size_t i = 1; i < series.size(); ++i) {
        if (series[i].number <= series[i - 1].number) std::abort();
    }
    return 0;
}
