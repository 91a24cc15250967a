#include "codec/base64/sixbit.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

/// The kernel agrees with its reference, in two pieces cut anywhere. The first two bytes choose the alphabet and the
/// cut.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace sixbit = quill::codec::sixbit;
    if (size < 2) return 0;
    const auto alphabet = data[0] % 2 == 0 ? sixbit::Alphabet::base64 : sixbit::Alphabet::binhex;
    const std::string_view text(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::size_t cut = std::min<std::size_t>(data[1], text.size());
    sixbit::State state;
    sixbit::State expected_state;
    for (const std::string_view piece : {text.substr(0, cut), text.substr(cut)}) {
        const std::vector<char> in(piece.begin(), piece.end());  // its own block, so that over-reads are detected
        std::vector<char> out(sixbit::decoded_bound(in.size()));
        std::vector<char> expected(out.size());
        const auto progress = decode(alphabet, {in.data(), in.size()}, out.data(), state);
        const auto expected_progress =
            decode_reference(alphabet, {in.data(), in.size()}, expected.data(), expected_state);
        if (progress != expected_progress || state != expected_state) std::abort();
        if (!std::equal(out.data(), out.data() + progress.written, expected.data())) std::abort();
    }
    return 0;
}
