#include "codec/uu/uu.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

/// The kernel reads the lines that its reference reads, and can read its own output. The first byte chooses the
/// alphabet.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace uu = quill::codec::uu;
    if (size < 1) return 0;
    const auto alphabet = data[0] % 2 == 0 ? uu::Alphabet::uu : uu::Alphabet::xx;
    const std::vector<char> in(data + 1, data + size);
    std::vector<char> out(uu::decoded_bound(in.size()));
    std::vector<char> expected(out.size());
    const auto progress = decode_lines(alphabet, {in.data(), in.size()}, out.data());
    if (progress != decode_lines_reference(alphabet, {in.data(), in.size()}, expected.data())) std::abort();
    if (!std::equal(out.data(), out.data() + progress.written, expected.data())) std::abort();

    std::vector<char> text(uu::encoded_size(in.size()));
    if (encode_lines(alphabet, {in.data(), in.size()}, text.data()) != text.size()) std::abort();
    std::vector<char> back(uu::decoded_bound(text.size()));
    const auto read = decode_lines(alphabet, {text.data(), text.size()}, back.data());
    if (read.read != text.size() ||
        !std::equal(in.begin(), in.end(), back.begin(), back.begin() + static_cast<std::ptrdiff_t>(read.written)))
        std::abort();
    return 0;
}
