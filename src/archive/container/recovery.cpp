#include "archive/container/recovery.h"

#include "archive/container/format.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace quill::zip {
namespace {

constexpr std::string_view local_mark = "PK\x03\x04";
constexpr std::string_view any_mark = "PK";
constexpr unsigned newest_version = 100;  // ten times the version of the format, with room for future ones
constexpr std::uint64_t least_budget = 16U << 20U;
constexpr std::uint64_t budget_per_byte = 16;
constexpr std::uint64_t cost_of_mark = 64;

/// CRC and sizes from after a member's data, and the end of the data.
struct Descriptor {
    std::uint64_t data_end = 0;
    std::uint32_t crc = 0;
    std::uint64_t uncompressed_size = 0;
};

class Scan {
  public:
    explicit Scan(std::string_view bytes) : bytes_(bytes), budget_(least_budget + bytes.size() * budget_per_byte) {}

    std::deque<Member> members(std::size_t most) {
        std::deque<Member> found;
        std::uint64_t at = next_header(0);
        while (at < bytes_.size() && found.size() < most) {
            const std::optional<Header> header = plausible_header(at);
            found.push_back(member_at(at, *header));
            at = next_header(at + header->size + found.back().compressed_size);
        }
        return found;
    }

  private:
    std::optional<Header> plausible_header(std::uint64_t at) const {
        std::optional<Header> header = parse_local_header(bytes_, at);
        if (header && ((header->version_needed & 0xFFU) > newest_version || header->method > method_aes))
            header.reset();
        return header;
    }

    /// Returns the first plausible local header at or after `from`; the end of the bytes if there is none.
    std::uint64_t next_header(std::uint64_t from) const {
        while (from < bytes_.size()) {
            const std::size_t at = bytes_.find(local_mark, from);
            if (at == std::string_view::npos) break;
            if (plausible_header(at)) return at;
            from = at + 1;
        }
        return bytes_.size();
    }

    Member member_at(std::uint64_t at, const Header& header) {
        Member member;
        member.raw_name = header.name;
        member.extra = header.extra;
        member.local_offset = at;
        member.crc = header.crc;
        member.dos_time = header.dos_time;
        member.flags = header.flags;
        member.method = header.method;
        member.recovered = true;
        const std::uint64_t data = at + header.size;
        if ((header.flags & descriptor_flag) != 0 && header.compressed_size == 0) {
            take_descriptor(member, data);
        } else {
            member.compressed_size = header.compressed_size;
            member.uncompressed_size = header.uncompressed_size;
            check_stated_size(member, data);
        }
        return member;
    }

    void take_descriptor(Member& member, std::uint64_t data) {
        if (const std::optional<Descriptor> descriptor = find_descriptor(data)) {
            member.compressed_size = descriptor->data_end - data;
            member.uncompressed_size = descriptor->uncompressed_size;
            member.crc = descriptor->crc;
        } else {
            member.compressed_size = next_header(data) - data;
            member.sizes_known = false;
        }
    }

    /// Replaces a stated size that leads to nothing, past other headers or past the end.
    void check_stated_size(Member& member, std::uint64_t data) const {
        const std::uint64_t left = bytes_.size() - data;
        if (member.compressed_size > left) {
            member.compressed_size = next_header(data) - data;
            return;
        }
        const std::uint64_t end = data + member.compressed_size;
        if (end == bytes_.size() || slice(bytes_, end, any_mark.size()) == any_mark) return;
        member.compressed_size = std::min(next_header(data) - data, member.compressed_size);
    }

    std::optional<Descriptor> find_descriptor(std::uint64_t data) {
        std::uint64_t from = data;
        while (budget_ > 0) {
            const std::size_t at = bytes_.find(any_mark, from);
            const std::uint64_t cost = std::min<std::uint64_t>(at, bytes_.size()) - from + cost_of_mark;
            budget_ -= std::min(budget_, cost);
            if (at == std::string_view::npos) break;
            from = at + 1;
            const std::uint32_t signature = get32(bytes_, at);
            if (signature == descriptor_signature) {
                if (const auto found = descriptor_at(data, at, at + 4)) return found;
            } else if (signature == local_signature || signature == central_signature) {
                if (const auto found = unsigned_descriptor_before(data, at)) return found;
            }
        }
        return std::nullopt;
    }

    /// Returns the descriptor's numbers at `numbers` after data that end at `end`, in either width, if its size is the
    /// true one.
    std::optional<Descriptor> descriptor_at(std::uint64_t data, std::uint64_t end, std::uint64_t numbers) const {
        if (get32(bytes_, numbers + 4) == end - data) {
            return Descriptor{end, get32(bytes_, numbers), get32(bytes_, numbers + 8)};
        }
        if (get64(bytes_, numbers + 4) == end - data) {
            return Descriptor{end, get32(bytes_, numbers), get64(bytes_, numbers + 12)};
        }
        return std::nullopt;
    }

    std::optional<Descriptor> unsigned_descriptor_before(std::uint64_t data, std::uint64_t next) const {
        for (const std::uint64_t width : {12U, 20U}) {
            if (next - data < width) continue;
            const std::uint64_t end = next - width;
            const std::uint64_t size = width == 12 ? get32(bytes_, end + 4) : get64(bytes_, end + 4);
            if (size != end - data) continue;
            return Descriptor{end, get32(bytes_, end), width == 12 ? get32(bytes_, end + 8) : get64(bytes_, end + 12)};
        }
        return std::nullopt;
    }

    std::string_view bytes_;
    std::uint64_t budget_;  // of bytes searched for descriptors, so that many headers can't make the time quadratic
};

}  // namespace

std::deque<Member> scan_local_headers(std::string_view bytes, std::size_t most) {
    return Scan(bytes).members(most);
}

}  // namespace quill::zip
