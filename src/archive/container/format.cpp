#include "archive/container/format.h"

#include "archive/methods/methods.h"

namespace quill::zip {
namespace {

std::uint64_t get(std::string_view bytes, std::uint64_t at, unsigned width) {
    if (at > bytes.size() || bytes.size() - at < width) return 0;
    std::uint64_t value = 0;
    for (unsigned i = width; i-- > 0;) value = value << 8U | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

void put(std::string& out, std::uint64_t value, unsigned width) {
    for (unsigned i = 0; i < width; ++i) out.push_back(static_cast<char>(value >> (8U * i) & 0xFFU));
}

constexpr std::uint32_t in_zip64_32 = 0xFFFFFFFF;
constexpr std::uint16_t in_zip64_16 = 0xFFFF;

/// Replaces the numbers that did not fit their field (APPNOTE 4.5.3): the ZIP64 field has only those, in this order.
void apply_zip64(Header& header, bool central) {
    const std::optional<std::string_view> field = extra_field(header.extra, extra_zip64);
    if (!field) return;
    std::uint64_t at = 0;
    const auto take = [&](std::uint64_t& number) {
        if (number != in_zip64_32 || field->size() < at + 8) return;
        number = get64(*field, at);
        at += 8;
    };
    take(header.uncompressed_size);
    take(header.compressed_size);
    if (!central) return;
    take(header.local_offset);
    if (header.disk == in_zip64_16 && field->size() >= at + 4) header.disk = get32(*field, at);
}

/// Returns the parts common to both kinds of header: the fields from `version needed`, which begin `shared_at` bytes
/// into the header, and the name and the extra fields after its `fixed_size` bytes. Nullopt if they are not complete at
/// `at`.
std::optional<Header> parse_shared(std::string_view bytes, std::uint64_t at, std::uint32_t signature,
                                   std::uint64_t shared_at, std::size_t fixed_size) {
    if (get32(bytes, at) != signature || bytes.size() - at < fixed_size) return std::nullopt;
    const std::uint64_t shared = at + shared_at;
    Header header;
    header.version_needed = get16(bytes, shared);
    header.flags = get16(bytes, shared + 2);
    header.method = get16(bytes, shared + 4);
    header.dos_time = get32(bytes, shared + 6);
    header.crc = get32(bytes, shared + 10);
    header.compressed_size = get32(bytes, shared + 14);
    header.uncompressed_size = get32(bytes, shared + 18);
    const std::size_t name_size = get16(bytes, shared + 22);
    const std::size_t extra_size = get16(bytes, shared + 24);
    header.size = fixed_size + name_size + extra_size;
    if (bytes.size() - at < header.size) return std::nullopt;
    header.name = bytes.substr(at + fixed_size, name_size);
    header.extra = bytes.substr(at + fixed_size + name_size, extra_size);
    return header;
}

}  // namespace

std::string method_name(std::uint16_t method) {
    const archive::Method* const found = archive::find_method(method);
    return found == nullptr ? "method " + std::to_string(method) : std::string(found->name);
}

std::uint16_t get16(std::string_view bytes, std::uint64_t at) {
    return static_cast<std::uint16_t>(get(bytes, at, 2));
}

std::uint32_t get32(std::string_view bytes, std::uint64_t at) {
    return static_cast<std::uint32_t>(get(bytes, at, 4));
}

std::uint64_t get64(std::string_view bytes, std::uint64_t at) {
    return get(bytes, at, 8);
}

void put16(std::string& out, std::uint64_t value) {
    put(out, value, 2);
}

void put32(std::string& out, std::uint64_t value) {
    put(out, value, 4);
}

void put64(std::string& out, std::uint64_t value) {
    put(out, value, 8);
}

std::string_view slice(std::string_view bytes, std::uint64_t at, std::uint64_t size) {
    return at > bytes.size() ? std::string_view() : bytes.substr(at, size);
}

std::optional<std::string_view> extra_field(std::string_view extra, std::uint16_t id) {
    while (extra.size() >= 4) {
        const std::size_t size = get16(extra, 2);
        if (size > extra.size() - 4) return std::nullopt;
        if (get16(extra, 0) == id) return extra.substr(4, size);
        extra.remove_prefix(4 + size);
    }
    return std::nullopt;
}

std::optional<Header> parse_local_header(std::string_view bytes, std::uint64_t at) {
    constexpr std::uint64_t shared_at = 4;
    std::optional<Header> header = parse_shared(bytes, at, local_signature, shared_at, local_header_size);
    if (header) apply_zip64(*header, false);
    return header;
}

bool states_sizes(const Header& local) {
    const bool empty = local.crc == 0 && local.compressed_size == 0 && local.uncompressed_size == 0;
    return (local.flags & descriptor_flag) == 0 && !empty;
}

std::optional<Header> parse_central_header(std::string_view bytes, std::uint64_t at) {
    constexpr std::uint64_t shared_at = 6;
    std::optional<Header> header = parse_shared(bytes, at, central_signature, shared_at, central_header_size);
    if (!header) return header;
    header->made_by = get16(bytes, at + 4);
    header->size += get16(bytes, at + 32);  // the comment
    header->disk = get16(bytes, at + 34);
    header->external_attributes = get32(bytes, at + 38);
    header->local_offset = get32(bytes, at + 42);
    apply_zip64(*header, true);
    return header;
}

}  // namespace quill::zip
