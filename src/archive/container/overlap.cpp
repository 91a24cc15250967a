#include "archive/container/overlap.h"

#include "archive/container/format.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace quill::zip {
namespace {

std::uint64_t plus(std::uint64_t a, std::uint64_t b) {
    return a > std::numeric_limits<std::uint64_t>::max() - b ? std::numeric_limits<std::uint64_t>::max() : a + b;
}

/// Returns the end of a member's data, using the length of its local header.
std::uint64_t exact_end(std::string_view bytes, const Member& member) {
    const std::optional<Header> header = parse_local_header(bytes, member.local_offset);
    return plus(member.local_offset, plus(header ? header->size : local_header_size, member.compressed_size));
}

/// Returns the same, estimated from the central header.
std::uint64_t likely_end(const Member& member) {
    return plus(member.local_offset, plus(local_header_size + member.raw_name.size(), member.compressed_size));
}

/// Gives a member the numbers of its own header if they differ and end its data at `limit` at the latest.
bool take_own_numbers(std::string_view bytes, std::uint64_t limit, Member& member) {
    const std::optional<Header> own = parse_local_header(bytes, member.local_offset);
    if (!own || !states_sizes(*own) || own->compressed_size == member.compressed_size) return false;
    if (plus(member.local_offset, plus(own->size, own->compressed_size)) > limit) return false;
    member.compressed_size = own->compressed_size;
    member.uncompressed_size = own->uncompressed_size;
    member.crc = own->crc;
    member.amended = true;
    return true;
}

/// Limits a member to the bytes before the directory.
void end_at_directory(std::string_view bytes, std::uint64_t directory, Member& member) {
    if (likely_end(member) <= directory || exact_end(bytes, member) <= directory) return;
    if (take_own_numbers(bytes, directory, member)) return;
    const std::uint64_t size_of_header = exact_end(bytes, member) - member.local_offset - member.compressed_size;
    if (plus(member.local_offset, size_of_header) > directory) {
        member.overlaps = true;
    } else {
        member.compressed_size = directory - member.local_offset - size_of_header;
        member.amended = true;
    }
}

}  // namespace

void mark_overlaps(std::string_view bytes, std::uint64_t directory, std::vector<Member>& members) {
    std::vector<std::uint32_t> order(members.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto before = [&](std::uint32_t a, std::uint32_t b) {
        return members[a].local_offset < members[b].local_offset;
    };
    if (!std::is_sorted(order.begin(), order.end(), before)) std::stable_sort(order.begin(), order.end(), before);
    std::erase_if(order, [&](std::uint32_t i) { return members[i].elsewhere; });

    Member* furthest = nullptr;
    for (const std::uint32_t i : order) {
        Member& member = members[i];
        if (furthest != nullptr && member.local_offset < likely_end(*furthest) &&
            !take_own_numbers(bytes, member.local_offset, *furthest)) {
            member.overlaps = member.local_offset < exact_end(bytes, *furthest);
        }
        if (member.sizes_known) end_at_directory(bytes, directory, member);
        if (furthest == nullptr || likely_end(member) > likely_end(*furthest)) furthest = &member;
    }
    std::uint64_t next = directory;
    for (auto i = order.rbegin(); i != order.rend(); ++i) {
        const std::uint64_t begin = members[*i].local_offset;
        members[*i].room = next - std::min(begin, next);
        next = std::min(begin, next);
    }
}

}  // namespace quill::zip
