#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The bytes of a ZIP file (APPNOTE 4.3 to 4.6): parsing and building its records. All numbers are little-endian and
/// are read through checked getters.
namespace quill::zip {

constexpr std::uint32_t local_signature = 0x04034b50;             // APPNOTE 4.3.7
constexpr std::uint32_t descriptor_signature = 0x08074b50;        // 4.3.9
constexpr std::uint32_t central_signature = 0x02014b50;           // 4.3.12
constexpr std::uint32_t zip64_end_signature = 0x06064b50;         // 4.3.14
constexpr std::uint32_t zip64_locator_signature = 0x07064b50;     // 4.3.15
constexpr std::uint32_t end_of_directory_signature = 0x06054b50;  // 4.3.16

constexpr std::size_t local_header_size = 30;
constexpr std::size_t central_header_size = 46;
constexpr std::size_t zip64_end_size = 56;
constexpr std::size_t zip64_locator_size = 20;
constexpr std::size_t end_of_directory_size = 22;

/// General purpose bits (APPNOTE 4.4.4).
enum Flag : std::uint16_t {
    encrypted_flag = 1U << 0U,
    descriptor_flag = 1U << 3U,  ///< CRC and sizes follow the data
    patch_flag = 1U << 5U,
    strong_encryption_flag = 1U << 6U,
    utf8_flag = 1U << 11U,
    masked_header_flag = 1U << 13U  ///< the central directory is encrypted
};

/// Compression methods (APPNOTE 4.4.5) that the container treats specially.
constexpr std::uint16_t method_stored = 0;
constexpr std::uint16_t method_deflated = 8;
constexpr std::uint16_t method_aes = 99;

/// Extra fields (APPNOTE 4.5, 4.6) that are read.
constexpr std::uint16_t extra_zip64 = 0x0001;
constexpr std::uint16_t extra_ntfs = 0x000a;
constexpr std::uint16_t extra_timestamp = 0x5455;
constexpr std::uint16_t extra_unicode_path = 0x7075;
constexpr std::uint16_t extra_aes = 0x9901;

/// Returns a method's name as shown to people: "stored", "deflated", "bzip2", "LZMA" ...; "method 77" for an unnamed
/// one.
std::string method_name(std::uint16_t method);

/// Return the number at byte `at` of `bytes`; 0 if it is not complete.
std::uint16_t get16(std::string_view bytes, std::uint64_t at);
std::uint32_t get32(std::string_view bytes, std::uint64_t at);
std::uint64_t get64(std::string_view bytes, std::uint64_t at);

void put16(std::string& out, std::uint64_t value);
void put32(std::string& out, std::uint64_t value);
void put64(std::string& out, std::uint64_t value);

/// Returns `size` bytes of `bytes` from `at`, or as many as there are.
std::string_view slice(std::string_view bytes, std::uint64_t at, std::uint64_t size);

/// Returns the data of the first field `id` in a header's extra bytes. A field that exceeds the remaining bytes ends
/// the search.
std::optional<std::string_view> extra_field(std::string_view extra, std::uint16_t id);

/// A local or central header, with the 64-bit numbers of its ZIP64 field already applied.
struct Header {
    std::uint16_t made_by = 0;  ///< 0 in a local header
    std::uint16_t version_needed = 0;
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t dos_time = 0;  ///< date in the upper half, time in the lower (APPNOTE 4.4.6)
    std::uint32_t crc = 0;
    std::uint64_t compressed_size = 0;
    std::uint64_t uncompressed_size = 0;
    std::uint32_t disk = 0;                 ///< central only
    std::uint32_t external_attributes = 0;  ///< central only
    std::uint64_t local_offset = 0;         ///< central only, as written
    std::string_view name;
    std::string_view extra;
    std::uint64_t size = 0;  ///< bytes of the whole header
};

/// Returns the local header at `at`; nullopt if there is no complete one.
std::optional<Header> parse_local_header(std::string_view bytes, std::uint64_t at);

/// Returns true if a local header has the CRC and the sizes itself, instead of leaving them to the data descriptor.
bool states_sizes(const Header& local);

/// Returns the central header at `at`; nullopt if there is no complete one (its comment may be cut).
std::optional<Header> parse_central_header(std::string_view bytes, std::uint64_t at);

}  // namespace quill::zip
