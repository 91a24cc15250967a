#include "zip/libzip_member.h"

#include <array>
#include <memory>
#include <vector>
#include <zip.h>

namespace quill::zip {
namespace {

constexpr std::string_view member_name = "m";
constexpr std::size_t piece = 256 << 10;
constexpr std::uint64_t most = 0xFFFFFFF0;

/// What both headers of a member have in common, from `version needed` to the length of the extra fields.
std::string common_fields(const Header& header, std::string_view extra) {
    std::string out;
    put16(out, header.version_needed);
    constexpr unsigned not_needed = descriptor_flag | utf8_flag;
    put16(out, header.flags & ~not_needed);
    put16(out, header.method);
    put32(out, header.dos_time);
    put32(out, header.crc);
    put32(out, header.compressed_size);
    put32(out, header.uncompressed_size);
    put16(out, member_name.size());
    put16(out, extra.size());
    return out;
}

std::string aes_extra(const Header& header) {
    std::string out;
    const std::optional<std::string_view> field = extra_field(header.extra, extra_aes);
    if (!field) return out;
    put16(out, extra_aes);
    put16(out, field->size());
    return out.append(*field);
}

struct CloseArchive {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct CloseFile {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

LibzipResult failure(zip_error_t& error) {
    const int code = zip_error_code_zip(&error);
    return {false, code == ZIP_ER_WRONGPASSWD || code == ZIP_ER_NOPASSWD, zip_error_strerror(&error)};
}

LibzipResult read_all(zip_t* archive, const std::string& password, const std::function<bool(std::string_view)>& sink) {
    const std::unique_ptr<zip_file_t, CloseFile> file(
        password.empty() ? zip_fopen_index(archive, 0, 0) : zip_fopen_index_encrypted(archive, 0, 0, password.c_str()));
    if (!file) return failure(*zip_get_error(archive));
    std::vector<char> buffer(piece);
    while (true) {
        const zip_int64_t n = zip_fread(file.get(), buffer.data(), buffer.size());
        if (n == 0) return {true, false, {}};
        if (n < 0) return failure(*zip_file_get_error(file.get()));
        if (!sink({buffer.data(), static_cast<std::size_t>(n)})) return {false, false, "stopped"};
    }
}

}  // namespace

bool libzip_reads(std::uint16_t method) {
    return zip_compression_method_supported(method, 0) == 1;
}

LibzipResult read_member_by_libzip(const Header& header, std::string_view data, const std::string& password,
                                   const std::function<bool(std::string_view)>& sink) {
    if (data.size() > most || header.uncompressed_size > most) return {false, false, "too large for its method"};
    const std::string extra = aes_extra(header);
    const std::string common = common_fields(header, extra);
    std::string before, after;
    put32(before, local_signature);
    before.append(common).append(member_name).append(extra);

    put32(after, central_signature);
    put16(after, header.version_needed);
    after.append(common);
    after.append(central_header_size - after.size(), '\0');  // no comment, volume 0, no attributes, at offset 0
    after.append(member_name).append(extra);
    const std::size_t directory_size = after.size();
    put32(after, end_of_directory_signature);
    put32(after, 0);
    put16(after, 1);
    put16(after, 1);
    put32(after, directory_size);
    put32(after, before.size() + data.size());
    put16(after, 0);

    const auto fragment = [](std::string_view bytes) {
        // libzip does not write to a fragment of an archive that is opened for reading.
        return zip_buffer_fragment_t{reinterpret_cast<zip_uint8_t*>(const_cast<char*>(bytes.data())), bytes.size()};
    };
    const std::array<zip_buffer_fragment_t, 3> fragments{fragment(before), fragment(data), fragment(after)};
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_fragment_create(fragments.data(), fragments.size(), 0, &error);
    if (source == nullptr) return failure(error);
    const std::unique_ptr<zip_t, CloseArchive> archive(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (!archive) {
        zip_source_free(source);
        return failure(error);
    }
    return read_all(archive.get(), password, sink);
}

}  // namespace quill::zip
