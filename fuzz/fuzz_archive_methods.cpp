// Each compression method without a container: the first byte is the method, the second the flags, the third whether
// the size is known and the size of small steps. Steps of any size give the same bytes.

#include "archive/methods/methods.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

namespace archive = quill::archive;

constexpr std::size_t most = 1U << 20U;

struct Decoded {
    std::string content;
    archive::StreamState state = archive::StreamState::running;
    bool at_end() const { return state == archive::StreamState::ended || state == archive::StreamState::complete; }
};

Decoded decode(const archive::Method& method, const archive::StreamInfo& info, std::string_view packed,
               std::size_t in_size, std::size_t out_size) {
    const archive::DecompressorPtr decompressor = method.make(info);
    Decoded decoded;
    std::string out(out_size, '\0');
    bool idle = false;
    while (!idle && decoded.content.size() < most) {
        const std::string_view in = packed.substr(0, in_size);
        const archive::Step step = decompressor->step(in, out);
        if (step.read > in.size() || step.written > out.size()) std::abort();
        packed.remove_prefix(step.read);
        decoded.content.append(out, 0, step.written);
        decoded.state = step.state;
        if (step.state != archive::StreamState::running && step.state != archive::StreamState::complete) break;
        idle = step.read == 0 && step.written == 0;
        if (idle && !in.empty()) std::abort();  // no progress
    }
    return decoded;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t head = 3;
    if (size < head) return 0;
    const archive::Method* const method = archive::find_method(data[0]);
    if (method == nullptr || method->make == nullptr) return 0;
    archive::StreamInfo info{data[0], data[1]};
    constexpr std::size_t some_size = 4000;
    if (data[2] % 2 == 1) info.size = some_size;
    const std::size_t step = 1 + data[2] / 2;
    const std::string_view packed(reinterpret_cast<const char*>(data) + head, size - head);
    const Decoded at_once = decode(*method, info, packed, packed.size(), most);
    const Decoded in_steps = decode(*method, info, packed, step, step);
    if (at_once.content.size() >= most || in_steps.content.size() >= most) return 0;
    if (at_once.at_end() != in_steps.at_end()) std::abort();
    if (at_once.at_end() && at_once.content != in_steps.content) std::abort();
    return 0;
}
