#include "codec/uu/uu_line.h"

#include <algorithm>

namespace quill::codec::uu {
namespace {

constexpr std::size_t most_extra = 3;

Fit fit_of(std::size_t have, std::size_t bytes, std::size_t expected) {
    if (have == expected) return Fit::exact;
    if (have > expected) return have <= expected + most_extra ? Fit::extra : Fit::none;
    return have == (bytes * 4 + 2) / 3 ? Fit::unpadded : Fit::stripped;
}

/// Returns true where `characters` are zeros alone, as in a check character of no data.
bool are_zeros(Alphabet alphabet, std::string_view characters) {
    return std::all_of(characters.begin(), characters.end(), [alphabet](char c) { return value_of(alphabet, c) == 0; });
}

/// Returns true where the last character holds bits of the last byte and none after it. A zero there is more likely to
/// be one of the characters that fill the group, in a row that lost another.
bool may_be_unpadded(Alphabet alphabet, std::string_view data, std::size_t bytes) {
    const int last = data.empty() ? -1 : value_of(alphabet, data.back());
    return last > 0 && static_cast<unsigned>(last) % (bytes % 3 == 1 ? 16U : 4U) == 0;
}

}  // namespace

DataLine judge(Alphabet alphabet, std::string_view line) {
    DataLine out;
    const int length = line.empty() ? -1 : value_of(alphabet, line.front());
    if (length < 0) return out;
    out.bytes = static_cast<std::size_t>(length);
    out.expected = characters_for(out.bytes);
    std::string_view data = line.substr(1);
    const std::size_t last = data.find_last_not_of(blanks) + 1;
    if (data.size() > out.expected && last < data.size()) {
        out.blanks_after = last <= out.expected;
        data = data.substr(0, std::max(last, out.expected));
    }
    out.fit = fit_of(data.size(), out.bytes, out.expected);
    if (out.bytes == 0 && !are_zeros(alphabet, data)) out.fit = Fit::none;
    const std::string_view counted = data.substr(0, out.expected);
    out.clean = std::all_of(counted.begin(), counted.end(), [&](char c) { return value_of(alphabet, c) >= 0; });
    if (out.fit == Fit::unpadded && !may_be_unpadded(alphabet, data, out.bytes)) out.fit = Fit::stripped;
    // Only blanks get lost at the end of a line, and only uuencode writes blanks.
    if (out.fit == Fit::stripped && alphabet == Alphabet::xx) out.fit = Fit::none;
    return out;
}

}  // namespace quill::codec::uu
