#pragma once

#include "archive/container/archive_layout.h"
#include "archive/container/format.h"
#include "checksum/checksum.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quill::tests {

/// The differences of a built archive's member from a plain stored one.
struct Odd {
    std::uint16_t method = zip::method_stored;
    std::uint16_t flags = 0;
    std::optional<std::string> packed = {};  ///< the bytes in the archive, if they are not the content itself
    std::optional<std::uint32_t> crc = {};
    std::optional<std::uint64_t> stated_size = {};
    std::optional<std::uint64_t> stated_packed_size = {};
    std::optional<std::string> local_name = {};
    std::optional<std::uint64_t> local_size = {};  ///< stated by the local header, if the other header is wrong
    std::optional<std::uint64_t> local_packed_size = {};
    std::optional<std::uint32_t> local_crc = {};
    std::string extra = {};        ///< of the central header
    std::string local_extra = {};  ///< of the local header
    std::uint16_t made_by = 20;    ///< upper byte: 0 for DOS, 3 for Unix
    std::uint32_t attributes = 0;
    std::optional<std::uint64_t> offset = {};
    bool silent_local = false;  ///< CRC and sizes in a descriptor after the data
};

/// Builds archives byte by byte, including wrong ones.
class ArchiveBuilder {
  public:
    static constexpr std::uint32_t time = 0x5A6B8C2D;  // 2025-03-11 17:33:26

    ArchiveBuilder& add(std::string_view name, std::string_view content, const Odd& odd = {}) {
        const std::string packed = odd.packed.value_or(std::string(content));
        const std::uint32_t crc = odd.crc.value_or(quill::crc32(0, content));
        const std::uint64_t size = odd.stated_size.value_or(content.size());
        const std::uint64_t packed_size = odd.stated_packed_size.value_or(packed.size());
        std::uint16_t flags = odd.flags;
        if (odd.silent_local) flags |= zip::descriptor_flag;
        const std::string local_name = odd.local_name.value_or(std::string(name));
        const std::uint64_t offset = odd.offset.value_or(bytes_.size());
        zip::put32(bytes_, zip::local_signature);
        put_fields(bytes_, flags, odd.method, odd.silent_local ? 0 : odd.local_crc.value_or(crc),
                   odd.silent_local ? 0 : odd.local_packed_size.value_or(packed_size),
                   odd.silent_local ? 0 : odd.local_size.value_or(size));
        zip::put16(bytes_, local_name.size());
        zip::put16(bytes_, odd.local_extra.size());
        bytes_ += local_name + odd.local_extra + packed;
        if (odd.silent_local) {
            zip::put32(bytes_, zip::descriptor_signature);
            zip::put32(bytes_, crc);
            zip::put32(bytes_, packed_size);
            zip::put32(bytes_, size);
        }
        zip::put32(directory_, zip::central_signature);
        zip::put16(directory_, odd.made_by);
        put_fields(directory_, flags, odd.method, crc, packed_size, size);
        zip::put16(directory_, name.size());
        zip::put16(directory_, odd.extra.size());
        zip::put16(directory_, 0);  // comment
        zip::put16(directory_, 0);  // volume
        zip::put16(directory_, 0);  // internal attributes
        zip::put32(directory_, odd.attributes);
        zip::put32(directory_, offset);
        directory_.append(name).append(odd.extra);
        ++count_;
        return *this;
    }

    /// Returns the members without a directory.
    const std::string& members() const { return bytes_; }
    const std::string& directory() const { return directory_; }

    std::string finish(std::string_view comment = {}) const {
        return bytes_ + directory_ + zip::end_records(count_, bytes_.size(), directory_.size(), comment);
    }

  private:
    static void put_fields(std::string& out, std::uint16_t flags, std::uint16_t method, std::uint32_t crc,
                           std::uint64_t packed_size, std::uint64_t size) {
        zip::put16(out, 20);  // version needed
        zip::put16(out, flags);
        zip::put16(out, method);
        zip::put32(out, time);
        zip::put32(out, crc);
        zip::put32(out, packed_size);
        zip::put32(out, size);
    }

    std::string bytes_;
    std::string directory_;
    std::uint64_t count_ = 0;
};

}  // namespace quill::tests
