#include "archive/container/archive_layout.h"

#include "archive/container/format.h"

#include <algorithm>

namespace quill::zip {
namespace {

constexpr std::uint64_t in_zip64 = 0xFFFFFFFF;
constexpr std::uint64_t count_in_zip64 = 0xFFFF;
constexpr std::size_t offset_at = 42;  // of the local header's offset in a central header

/// Returns the size of the data descriptor at `at`, which must state the member's sizes; 0 if there is none.
std::uint64_t descriptor_size(std::string_view archive, std::uint64_t at, const Member& member) {
    const std::uint64_t signature = get32(archive, at) == descriptor_signature ? 4 : 0;
    const std::uint64_t sizes = at + signature + 4;
    const bool narrow =
        get32(archive, sizes) == member.compressed_size && get32(archive, sizes + 4) == member.uncompressed_size;
    const bool wide =
        get64(archive, sizes) == member.compressed_size && get64(archive, sizes + 8) == member.uncompressed_size;
    if (narrow && sizes + 8 <= archive.size()) return signature + 12;
    return wide && sizes + 16 <= archive.size() ? signature + 20 : 0;
}

}  // namespace

Extent extent_of(std::string_view archive, const Member& member) {
    const std::optional<Header> local = parse_local_header(archive, member.local_offset);
    const std::uint64_t data = member.local_offset + (local ? local->size : local_header_size);
    std::uint64_t end = data + member.compressed_size;
    if (local && (local->flags & descriptor_flag) != 0) end += descriptor_size(archive, end, member);
    return {member.local_offset, std::min<std::uint64_t>(end, archive.size())};
}

std::vector<Extent> kept_extents(std::uint64_t end, std::vector<Extent> removed) {
    std::sort(removed.begin(), removed.end(), [](const Extent& a, const Extent& b) { return a.begin < b.begin; });
    std::vector<Extent> kept;
    std::uint64_t at = 0;
    for (const Extent& gap : removed) {
        if (gap.begin > at) kept.push_back({at, std::min(gap.begin, end)});
        at = std::max(at, gap.end);
    }
    if (at < end) kept.push_back({at, end});
    return kept;
}

std::string with_local_offset(std::string_view central_header, std::uint64_t offset) {
    std::string out(central_header);
    std::string number;
    if (get32(out, offset_at) != in_zip64) {
        put32(number, offset);
        return out.replace(offset_at, number.size(), number);
    }
    const std::optional<Header> header = parse_central_header(central_header, 0);
    const std::optional<std::string_view> field = header ? extra_field(header->extra, extra_zip64) : std::nullopt;
    if (!field) return out;
    constexpr std::size_t compressed_at = 20, uncompressed_at = 24, width = 8;
    std::size_t at = static_cast<std::size_t>(field->data() - central_header.data());
    if (get32(out, uncompressed_at) == in_zip64) at += width;
    if (get32(out, compressed_at) == in_zip64) at += width;
    put64(number, offset);
    if (at + width <= out.size()) out.replace(at, width, number);
    return out;
}

std::string end_records(std::uint64_t count, std::uint64_t directory_offset, std::uint64_t directory_size,
                        std::string_view comment) {
    constexpr std::uint16_t version = 45;
    std::string out;
    if (count >= count_in_zip64 || directory_offset >= in_zip64 || directory_size >= in_zip64) {
        put32(out, zip64_end_signature);
        put64(out, zip64_end_size - 12);
        put16(out, version);
        put16(out, version);
        put32(out, 0);
        put32(out, 0);
        put64(out, count);
        put64(out, count);
        put64(out, directory_size);
        put64(out, directory_offset);
        put32(out, zip64_locator_signature);
        put32(out, 0);
        put64(out, directory_offset + directory_size);
        put32(out, 1);
    }
    put32(out, end_of_directory_signature);
    put16(out, 0);
    put16(out, 0);
    put16(out, std::min(count, count_in_zip64));
    put16(out, std::min(count, count_in_zip64));
    put32(out, std::min(directory_size, in_zip64));
    put32(out, std::min(directory_offset, in_zip64));
    put16(out, comment.size());
    return out.append(comment);
}

}  // namespace quill::zip
