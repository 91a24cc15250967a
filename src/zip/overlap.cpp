#include "zip/overlap.h"

#include "zip/format.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace quill::zip {
namespace {

std::uint64_t plus(std::uint64_t a, std::uint64_t b) {
    return a > std::numeric_limits<std::uint64_t>::max() - b ? std::numeric_limits<std::uint64_t>::max() : a + b;
}

/// Where a member's data end, by the length that its local header has.
std::uint64_t exact_end(std::string_view bytes, const Member& member) {
    const std::optional<Header> header = parse_local_header(bytes, member.local_offset);
    return plus(member.local_offset, plus(header ? header->size : local_header_size, member.compressed_size));
}

/// The same, guessed from the central header.
std::uint64_t likely_end(const Member& member) {
    return plus(member.local_offset, plus(local_header_size + member.raw_name.size(), member.compressed_size));
}

}  // namespace

void mark_overlaps(std::string_view bytes, std::uint64_t directory, std::vector<Member>& members) {
    std::vector<std::uint32_t> order(members.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto before = [&](std::uint32_t a, std::uint32_t b) {
        return members[a].local_offset < members[b].local_offset;
    };
    if (!std::is_sorted(order.begin(), order.end(), before)) std::stable_sort(order.begin(), order.end(), before);

    const Member* furthest = nullptr;
    for (const std::uint32_t i : order) {
        Member& member = members[i];
        if (member.elsewhere) continue;
        if (furthest != nullptr && member.local_offset < likely_end(*furthest)) {
            member.overlaps = member.local_offset < exact_end(bytes, *furthest);
        }
        if (likely_end(member) > directory && member.sizes_known) {
            member.overlaps = member.overlaps || exact_end(bytes, member) > directory;
        }
        if (furthest == nullptr || likely_end(member) > likely_end(*furthest)) furthest = &member;
    }
}

}  // namespace quill::zip
