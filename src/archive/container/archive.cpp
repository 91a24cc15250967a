#include "archive/container/archive.h"

#include "archive/container/central_directory.h"
#include "archive/container/format.h"
#include "archive/container/overlap.h"
#include "archive/container/recovery.h"
#include "archive/names/member_names.h"

#include <algorithm>
#include <utility>

namespace quill::zip {
namespace {

constexpr unsigned unix_host = 3;
constexpr unsigned darwin_host = 19;
constexpr std::uint32_t file_type_mask = 0170000;
constexpr std::uint32_t link_type = 0120000;
constexpr std::uint32_t directory_type = 0040000;
constexpr std::uint32_t dos_directory_bit = 0x10;
constexpr std::size_t least_scanned = 100'000;  // members to search for in any file
constexpr std::size_t aes_method_at = 5;        // after its version, "AE" and strength

/// Returns true if the directory may be that of an archive inside a member, left over when the end of the outer file
/// was cut off: before it are bytes that begin with a member of their own.
bool is_of_inner_archive(std::string_view bytes, const Directory& directory, const std::deque<Member>& scanned) {
    return directory.shift > 0 && std::any_of(scanned.begin(), scanned.end(), [&](const Member& member) {
               const auto header = parse_local_header(bytes, member.local_offset);
               const std::uint64_t begin = member.local_offset + (header ? header->size : 0);
               return begin <= directory.begin && directory.end_record < begin + member.compressed_size;
           });
}

/// Adds the members of `scanned` that the directory lacks, up to `most` in total.
void add_missing(std::vector<Member>& members, std::deque<Member> scanned, std::size_t most) {
    std::vector<std::uint64_t> known;
    known.reserve(members.size());
    for (const Member& member : members) known.push_back(member.local_offset);
    std::sort(known.begin(), known.end());
    std::erase_if(scanned, [&](const Member& member) {
        return std::binary_search(known.begin(), known.end(), member.local_offset);
    });
    members.reserve(std::min(most, members.size() + scanned.size()));
    for (; !scanned.empty() && members.size() < most; scanned.pop_front()) members.push_back(scanned.front());
}

}  // namespace

bool Member::is_encrypted() const {
    return (flags & encrypted_flag) != 0;
}

bool Member::is_aes() const {
    return method == method_aes && extra_field(extra, extra_aes).has_value();
}

bool Member::made_on_unix() const {
    const unsigned host = made_by >> 8U;
    return host == unix_host || host == darwin_host;
}

bool Member::is_directory() const {
    if (!name.empty() && (name.back() == '/' || name.back() == '\\')) return true;
    if (made_on_unix() && (external_attributes >> 16U & file_type_mask) == directory_type)
        return uncompressed_size == 0;
    return !made_on_unix() && (external_attributes & dos_directory_bit) != 0 && uncompressed_size == 0;
}

bool Member::is_link() const {
    return made_on_unix() && (external_attributes >> 16U & file_type_mask) == link_type;
}

std::optional<archive::Encryption> Member::encryption() const {
    if (!is_encrypted() || (flags & (strong_encryption_flag | masked_header_flag)) != 0) return std::nullopt;
    if (!is_aes()) return archive::Encryption::traditional;
    constexpr std::size_t strength_at = 4;
    const std::string_view field = *extra_field(extra, extra_aes);
    const auto strength = static_cast<std::uint8_t>(get16(field, strength_at) & 0xFFU);
    const bool known = strength >= archive::aes_strength(archive::Encryption::aes128) &&
                       strength <= archive::aes_strength(archive::Encryption::aes256);
    return known ? std::optional(static_cast<archive::Encryption>(strength)) : std::nullopt;
}

std::uint16_t Member::content_method() const {
    return is_aes() ? get16(*extra_field(extra, extra_aes), aes_method_at) : method;
}

Result<Archive> Archive::open(const std::string& path) {
    Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return file.error();
    Result<Archive> archive = parse(file->bytes());
    if (!archive) return archive;
    archive->file_ = std::move(*file);
    return archive;
}

Result<Archive> Archive::parse(std::string_view bytes) {
    Archive archive;
    archive.bytes_ = bytes;
    archive.directory_ = find_directory(bytes);
    if (archive.directory_) {
        DirectoryContent content = read_directory(bytes, *archive.directory_);
        archive.members_ = std::move(content.members);
        archive.problems_ = std::move(content.problems);
        archive.directory_whole_ = content.whole;
    }
    const bool begins_with_another =
        archive.directory_ && archive.directory_->shift > 0 && get32(bytes, 0) == local_signature;
    const bool empty_but_something = archive.directory_ && archive.members_.empty() && archive.directory_->end > 0;
    if (!archive.directory_ || !archive.directory_whole_ || begins_with_another || empty_but_something) {
        if (!archive.recover(empty_but_something)) {
            return Error{ErrorCode::bad_input, 0, "this is no ZIP file: it has neither a directory nor a member"};
        }
    }
    archive.read_names_in({});
    mark_overlaps(bytes, archive.directory_ ? archive.directory_->begin : bytes.size(), archive.members_);
    return archive;
}

/// Searches for members by their own headers. Returns false if there is neither a directory nor a member.
bool Archive::recover(bool directory_is_empty) {
    const std::size_t most = most_members(bytes_.size()), most_scanned = std::max(least_scanned, most / 2);
    std::deque<Member> scanned = scan_local_headers(bytes_, most_scanned);
    const bool has_more = scanned.size() == most_scanned;
    if (directory_ && is_of_inner_archive(bytes_, *directory_, scanned)) {
        directory_.reset();
        std::vector<Member>().swap(members_);
        problems_.clear();
    }
    if (!directory_ && scanned.empty()) return false;
    if (!directory_) {
        problems_.push_back({ProblemKind::no_directory, bytes_.size()});
    }
    if (has_more) {
        problems_.push_back({ProblemKind::too_many, 0, {}, "there are more headers of members than are looked for"});
    }
    if (!directory_ || (directory_is_empty && !scanned.empty())) directory_whole_ = false;
    if (!directory_whole_) add_missing(members_, std::move(scanned), most);
    return true;
}

void Archive::read_names_in(std::string_view code_page) {
    names_without_sign_ = decode_names(members_, names_, code_page);
}

bool Archive::is_sound() const {
    return directory_ && directory_whole_ && std::all_of(members_.begin(), members_.end(), [&](const Member& m) {
               return !m.overlaps && !m.amended && !m.recovered && !m.elsewhere &&
                      parse_local_header(bytes_, m.local_offset);
           });
}

}  // namespace quill::zip
