#include "codec/yenc/yenc.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

/// The kernel agrees with its reference under each of the rules, and its output decodes to its input. The first two
/// bytes choose the rules and the byte before the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace yenc = quill::codec::yenc;
    if (size < 2) return 0;
    const auto rules = static_cast<yenc::Rules>(data[0] % 4);
    const bool last = data[0] / 4 % 2 == 0;
    const std::vector<char> in(data + 2, data + size);
    std::vector<char> out(yenc::decoded_bound(in.size()));
    std::vector<char> expected(out.size());
    const auto progress = decode(rules, {in.data(), in.size()}, data[1], last, out.data());
    if (progress != decode_reference(rules, {in.data(), in.size()}, data[1], last, expected.data())) std::abort();
    if (!std::equal(out.data(), out.data() + progress.written, expected.data())) std::abort();

    const std::size_t line_length = 1 + data[1];
    yenc::Column column;
    std::vector<char> text(yenc::encoded_bound(in.size(), line_length));
    text.resize(yenc::encode({in.data(), in.size()}, line_length, column, text.data()));
    std::vector<char> back(yenc::decoded_bound(text.size()));
    const auto read = decode(yenc::Rules::draft, {text.data(), text.size()}, '\n', true, back.data());
    if (read.written != in.size() || !std::equal(in.begin(), in.end(), back.begin())) std::abort();
    return 0;
}
