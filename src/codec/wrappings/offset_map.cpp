#include "codec/wrappings/offset_map.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace quill::codec {
namespace {

std::uint64_t number(PlainOffset at) {
    return static_cast<std::uint64_t>(at);
}

std::uint64_t step_of(Pace pace) {
    switch (pace) {
        case Pace::none:
            return 0;
        case Pace::same:
            return 1;
        case Pace::two_bytes:
            break;
    }
    return 2;
}

}  // namespace

OffsetMap::OffsetMap(files::Mapping stretches, std::uint64_t size)
    : stretches_(std::move(stretches)), count_(stretches_.bytes().size() / sizeof(Stretch)), size_(size) {}

Stretch OffsetMap::stretch(std::size_t index) const {
    Stretch out;
    if (index < count_) std::memcpy(&out, stretches_.bytes().data() + index * sizeof(Stretch), sizeof(Stretch));
    return out;
}

/// Returns the last stretch that begins at or before `at`.
std::size_t OffsetMap::index_of(PlainOffset at) const {
    std::size_t low = 0;
    std::size_t high = count_;
    while (high - low > 1) {
        const std::size_t middle = low + (high - low) / 2;
        (stretch(middle).plain <= number(at) ? low : high) = middle;
    }
    return low;
}

std::uint64_t OffsetMap::end_of(std::size_t index) const {
    return index + 1 < count_ ? stretch(index + 1).plain : size_;
}

WrappedOffset OffsetMap::origin_of(PlainOffset at) const {
    const Stretch found = stretch(index_of(at));
    const std::uint64_t into = std::min(number(at), size_) - found.plain;
    return WrappedOffset{found.wrapped + into * step_of(found.pace)};
}

bool OffsetMap::is_unchanged(PlainOffset begin, PlainOffset end) const {
    const std::size_t index = index_of(begin);
    return stretch(index).pace == Pace::same && number(end) <= end_of(index);
}

bool OffsetMap::is_guessed(PlainOffset begin, PlainOffset end) const {
    for (std::size_t i = index_of(begin); i < count_; ++i) {
        const Stretch here = stretch(i);
        if (here.plain >= number(end)) return false;
        if (here.guessed != 0) return true;
    }
    return false;
}

}  // namespace quill::codec
