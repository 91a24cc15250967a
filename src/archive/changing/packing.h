#pragma once

#include "archive/ciphers/encryption.h"
#include "archive/container/format.h"
#include "archive/progress.h"
#include "files/atomic_file.h"
#include "text/result.h"

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace quill::zip {

/// The compressed bytes of members until the archive is written: in memory while they are few, then in an unnamed file
/// in the archive's directory.
class Staging {
  public:
    /// Begins without bytes; `beside` is the archive's path.
    explicit Staging(std::string beside) : beside_(std::move(beside)) {}

    std::uint64_t size() const { return size_; }
    Status append(std::string_view bytes);
    /// Calls f(bytes) for the `size` bytes at `offset` in one or more pieces until it returns false, which is a
    /// success. Fails if they can't be read back.
    template <class F>
    Status read(std::uint64_t offset, std::uint64_t size, F&& f) const {
        if (offset < memory_.size()) {
            const std::string_view bytes = std::string_view(memory_).substr(offset, size);
            if (!f(bytes)) return Done{};
            offset += bytes.size();
            size -= bytes.size();
        }
        if (size == 0) return Done{};
        const Result<files::MappedFile> mapped = file_->read_back();
        if (!mapped) return mapped.error();
        const std::string_view bytes = mapped->bytes().substr(offset - memory_.size(), size);
        if (bytes.size() < size) return Error{ErrorCode::io, 0, "the compressed bytes could not be read back"};
        f(bytes);
        return Done{};
    }

  private:
    std::string beside_;
    std::string memory_;
    std::optional<files::AtomicFile> file_;
    std::uint64_t size_ = 0;
};

struct PackOptions {
    int level = 5;         ///< of libdeflate; of the method's library for files over 16 MiB and for other methods
    std::string password;  ///< empty for none
    archive::Encryption encryption = archive::Encryption::traditional;  ///< if there is a password
    std::uint16_t method = method_deflated;                             ///< one of `archive::compression_methods`
};

/// A member ready to be written: its headers' fields, and the place of its bytes.
struct PackedMember {
    std::string name;  ///< UTF-8
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t mode = 0;  ///< file type and permission bits
    std::uint32_t crc = 0;
    std::uint8_t aes_strength = 0;  ///< 0 if it is not encrypted with AES
    std::time_t modified = 0;
    std::uint64_t compressed_size = 0;
    std::uint64_t uncompressed_size = 0;
    std::uint64_t staged_at = 0;

    /// Returns the CRC for its headers: 0 for AES, which has its own code (AE-2).
    std::uint32_t stated_crc() const { return aes_strength == 0 ? crc : 0; }
    /// Changes its name, in UTF-8.
    void rename(std::string_view new_name);
    /// Return the headers' bytes (APPNOTE 4.3.7, 4.3.12), with ZIP64 fields if a number needs them.
    std::string local_header() const;
    std::string central_header(std::uint64_t local_offset) const;
};

/// Reads and compresses the file at `path`; stores it if it does not get smaller. Fails with the system's reason if the
/// file can't be read or the staging place is full, with `unsupported` for anything but a regular file, with
/// `cancelled` if the keeper's watch returns false.
Result<PackedMember> pack_file(const std::string& path, const std::string& name, const PackOptions& options,
                               Staging& staging, WatchKeeper& keeper);

/// Returns the symbolic link at `path` as a member whose content is the link's target. Fails with the system's reason.
Result<PackedMember> pack_link(const std::string& path, const std::string& name, const PackOptions& options,
                               Staging& staging);

/// Returns a directory's own member: `name` and a slash, without content.
PackedMember pack_directory(const std::string& name, std::time_t modified);

}  // namespace quill::zip
