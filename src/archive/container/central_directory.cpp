#include "archive/container/central_directory.h"

#include "archive/container/format.h"

#include <algorithm>
#include <string>

namespace quill::zip {
namespace {

constexpr std::string_view end_mark = "PK\x05\x06";
constexpr std::string_view central_mark = "PK\x01\x02";
constexpr std::size_t longest_comment = 0xFFFF;
constexpr std::uint64_t count_modulus = 0x10000;

/// Sets the directory to the place that leads to its first header: right before the end records, or the stated place.
/// Returns true if one of them does.
bool place(std::string_view bytes, Directory& directory, std::uint64_t end, std::uint64_t size, std::uint64_t offset) {
    directory.end = end;
    if (size <= end && (size == 0 || get32(bytes, end - size) == central_signature)) {
        directory.begin = end - size;
    } else if (offset < end && get32(bytes, offset) == central_signature) {
        directory.begin = offset;
    } else {
        return false;
    }
    directory.shift = static_cast<std::int64_t>(directory.begin) - static_cast<std::int64_t>(offset);
    return true;
}

/// Returns the position of the ZIP64 end record named by the locator before the end record at `at`, if there is one.
std::optional<std::uint64_t> find_zip64_end(std::string_view bytes, std::uint64_t at) {
    if (at < zip64_locator_size || get32(bytes, at - zip64_locator_size) != zip64_locator_signature)
        return std::nullopt;
    const std::uint64_t locator = at - zip64_locator_size;
    const std::uint64_t stated = get64(bytes, locator + 8);
    if (stated < locator && get32(bytes, stated) == zip64_end_signature) return stated;
    if (locator >= zip64_end_size && get32(bytes, locator - zip64_end_size) == zip64_end_signature) {
        return locator - zip64_end_size;
    }
    return std::nullopt;
}

std::optional<Directory> directory_of_end_record(std::string_view bytes, std::uint64_t at) {
    if (bytes.size() - at < end_of_directory_size) return std::nullopt;
    Directory directory;
    directory.end_record = at;
    directory.comment = slice(bytes, at + end_of_directory_size, get16(bytes, at + 20));
    if (const std::optional<std::uint64_t> zip64 = find_zip64_end(bytes, at)) {
        directory.stated_count = get64(bytes, *zip64 + 32);
        directory.wide_count = true;
        if (place(bytes, directory, *zip64, get64(bytes, *zip64 + 40), get64(bytes, *zip64 + 48))) return directory;
        directory.wide_count = false;
    }
    directory.stated_count = get16(bytes, at + 10);
    if (place(bytes, directory, at, get32(bytes, at + 12), get32(bytes, at + 16))) return directory;
    return std::nullopt;
}

Member member_of(const Header& header, const Directory& directory, std::uint64_t at) {
    Member member;
    member.raw_name = header.name;
    member.extra = header.extra;
    member.compressed_size = header.compressed_size;
    member.uncompressed_size = header.uncompressed_size;
    member.local_offset = header.local_offset + static_cast<std::uint64_t>(directory.shift);
    member.header_offset = at;
    member.header_size = static_cast<std::uint32_t>(header.size);
    member.crc = header.crc;
    member.dos_time = header.dos_time;
    member.external_attributes = header.external_attributes;
    member.made_by = header.made_by;
    member.flags = header.flags;
    member.method = header.method;
    return member;
}

/// Returns the number of the volume that contains the directory.
std::uint32_t own_disk(std::string_view bytes, const Directory& directory) {
    return directory.wide_count ? get32(bytes, directory.end + 16) : get16(bytes, directory.end_record + 4);
}

/// Returns true if a member that should be in another volume is in this one after all.
bool is_here(std::string_view bytes, const Member& member) {
    const std::optional<Header> local = parse_local_header(bytes, member.local_offset);
    return local && local->name == member.raw_name;
}

/// Returns the apparent number of entries. A count of 16 bits decides only if the directory is small.
std::uint64_t count_entries(std::string_view bytes, const Directory& directory) {
    const std::uint64_t most = (directory.end - directory.begin) / central_header_size;
    if (directory.wide_count || most < directory.stated_count + count_modulus) return directory.stated_count;
    std::uint64_t count = 0;
    for (std::uint64_t at = directory.begin; at < directory.end; ++count) {
        const std::optional<Header> header = parse_central_header(bytes, at);
        if (!header) break;
        at += header->size;
    }
    return count;
}

void check_surroundings(std::string_view bytes, const Directory& directory, std::vector<Problem>& problems) {
    const std::uint64_t end = directory.end_record + end_of_directory_size + directory.comment.size();
    if (directory.shift != 0) {
        problems.push_back({ProblemKind::shifted,
                            0,
                            {},
                            "the archive lies " + std::to_string(directory.shift) + " bytes from where it says"});
    }
    if (end < bytes.size()) {
        problems.push_back({ProblemKind::junk_behind,
                            end,
                            {},
                            std::to_string(bytes.size() - end) + " bytes follow that are not the archive's"});
    }
}

}  // namespace

std::optional<Directory> find_directory(std::string_view bytes) {
    if (bytes.size() < end_of_directory_size) return std::nullopt;
    std::size_t from = bytes.size() - end_of_directory_size;
    // An end record whose comment reaches the end of the file is best; any that leads to a directory will do, and one
    // of an empty archive, which any comment can contain, only if there is no other.
    const std::size_t nearest = from > longest_comment ? from - longest_comment : 0;
    std::optional<Directory> other;
    while (true) {
        const std::size_t at = bytes.rfind(end_mark, from);
        if (at == std::string_view::npos || (other && at < nearest)) return other;
        if (const std::optional<Directory> found = directory_of_end_record(bytes, at)) {
            const bool has_entries = found->begin < found->end;
            const bool fits = at + end_of_directory_size + get16(bytes, at + 20) == bytes.size();
            if (has_entries && fits) return found;
            if (!other || (has_entries && other->begin == other->end)) other = found;
        }
        if (at == 0) return other;
        from = at - 1;
    }
}

std::size_t most_members(std::uint64_t archive_size) {
    constexpr std::uint64_t always = 100'000;
    return std::max(always, archive_size / (local_header_size + central_header_size));
}

DirectoryContent read_directory(std::string_view bytes, const Directory& directory) {
    DirectoryContent content;
    check_surroundings(bytes, directory, content.problems);
    const std::uint64_t most =
        std::min((directory.end - directory.begin) / central_header_size, most_members(bytes.size()));
    content.members.reserve(std::min(count_entries(bytes, directory), most));
    const std::uint32_t disk = own_disk(bytes, directory);
    std::uint64_t at = directory.begin;
    while (at < directory.end && content.members.size() < most) {
        if (const std::optional<Header> header = parse_central_header(bytes, at)) {
            content.members.push_back(member_of(*header, directory, at));
            content.members.back().elsewhere = header->disk != disk && !is_here(bytes, content.members.back());
            at += header->size;
            continue;
        }
        content.whole = false;
        content.problems.push_back({ProblemKind::bad_directory, at});
        const std::size_t next = bytes.find(central_mark, at + 1);
        if (next == std::string_view::npos || next >= directory.end) break;
        at = next;
    }
    const std::uint64_t count = content.members.size();
    if (at + central_header_size <= directory.end && count == most) {
        content.whole = false;
        content.problems.push_back({ProblemKind::too_many, at});
        return content;
    }
    const bool agrees =
        directory.wide_count ? count == directory.stated_count : count % count_modulus == directory.stated_count;
    if (!agrees) {
        content.whole = content.whole && count > directory.stated_count;
        content.problems.push_back({ProblemKind::wrong_count,
                                    directory.end_record,
                                    {},
                                    "the directory has " + std::to_string(count) + " entries and says " +
                                        std::to_string(directory.stated_count)});
    }
    return content;
}

}  // namespace quill::zip
