#include "zip/libzip_member.h"

#include <array>
#include <dlfcn.h>
#include <memory>
#include <vector>
#include <zip.h>

namespace quill::zip {
namespace {

constexpr std::string_view member_name = "m";
constexpr std::size_t piece = 256 << 10;
constexpr std::uint64_t most = 0xFFFFFFF0;

/// libzip's functions. The library is loaded when a member first needs it, as it brings a library of cryptography with
/// it: to load both takes longer than all else that a program does at its start.
class Libzip {
  public:
    /// nullptr where the library can't be loaded.
    static const Libzip* get() {
        static const Libzip library;
        return library.complete_ ? &library : nullptr;
    }

    decltype(&::zip_compression_method_supported) compression_method_supported = nullptr;
    decltype(&::zip_discard) discard = nullptr;
    decltype(&::zip_error_code_zip) error_code_zip = nullptr;
    decltype(&::zip_error_init) error_init = nullptr;
    decltype(&::zip_error_strerror) error_strerror = nullptr;
    decltype(&::zip_fclose) fclose = nullptr;
    decltype(&::zip_file_get_error) file_get_error = nullptr;
    decltype(&::zip_fopen_index) fopen_index = nullptr;
    decltype(&::zip_fopen_index_encrypted) fopen_index_encrypted = nullptr;
    decltype(&::zip_fread) fread = nullptr;
    decltype(&::zip_get_error) get_error = nullptr;
    decltype(&::zip_open_from_source) open_from_source = nullptr;
    decltype(&::zip_source_buffer_fragment_create) source_buffer_fragment_create = nullptr;
    decltype(&::zip_source_free) source_free = nullptr;

  private:
    Libzip() : library_(dlopen(QUILL_LIBZIP, RTLD_NOW | RTLD_LOCAL)) {
        if (library_ == nullptr) return;
        complete_ = find(compression_method_supported, "zip_compression_method_supported") &&
                    find(discard, "zip_discard") && find(error_code_zip, "zip_error_code_zip") &&
                    find(error_init, "zip_error_init") && find(error_strerror, "zip_error_strerror") &&
                    find(fclose, "zip_fclose") && find(file_get_error, "zip_file_get_error") &&
                    find(fopen_index, "zip_fopen_index") && find(fopen_index_encrypted, "zip_fopen_index_encrypted") &&
                    find(fread, "zip_fread") && find(get_error, "zip_get_error") &&
                    find(open_from_source, "zip_open_from_source") &&
                    find(source_buffer_fragment_create, "zip_source_buffer_fragment_create") &&
                    find(source_free, "zip_source_free");
    }

    template <typename Function>
    bool find(Function& function, const char* name) {
        function = reinterpret_cast<Function>(dlsym(library_, name));
        return function != nullptr;
    }

    void* library_;  ///< stays loaded to the end of the program
    bool complete_ = false;
};

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
    void operator()(zip_t* archive) const { Libzip::get()->discard(archive); }
};
struct CloseFile {
    void operator()(zip_file_t* file) const { Libzip::get()->fclose(file); }
};

LibzipResult failure(const Libzip& libzip, zip_error_t& error) {
    const int code = libzip.error_code_zip(&error);
    return {false, code == ZIP_ER_WRONGPASSWD || code == ZIP_ER_NOPASSWD, libzip.error_strerror(&error)};
}

LibzipResult read_all(const Libzip& libzip, zip_t* archive, const std::string& password,
                      const std::function<bool(std::string_view)>& sink) {
    const std::unique_ptr<zip_file_t, CloseFile> file(
        password.empty() ? libzip.fopen_index(archive, 0, 0)
                         : libzip.fopen_index_encrypted(archive, 0, 0, password.c_str()));
    if (!file) return failure(libzip, *libzip.get_error(archive));
    std::vector<char> buffer(piece);
    while (true) {
        const zip_int64_t n = libzip.fread(file.get(), buffer.data(), buffer.size());
        if (n == 0) return {true, false, {}};
        if (n < 0) return failure(libzip, *libzip.file_get_error(file.get()));
        if (!sink({buffer.data(), static_cast<std::size_t>(n)})) return {false, false, "stopped"};
    }
}

}  // namespace

bool libzip_reads(std::uint16_t method) {
    const Libzip* const libzip = Libzip::get();
    return libzip != nullptr && libzip->compression_method_supported(method, 0) == 1;
}

LibzipResult read_member_by_libzip(const Header& header, std::string_view data, const std::string& password,
                                   const std::function<bool(std::string_view)>& sink) {
    const Libzip* const libzip = Libzip::get();
    if (libzip == nullptr) return {false, false, "libzip, which reads such members, is not installed"};
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
    libzip->error_init(&error);
    zip_source_t* source = libzip->source_buffer_fragment_create(fragments.data(), fragments.size(), 0, &error);
    if (source == nullptr) return failure(*libzip, error);
    const std::unique_ptr<zip_t, CloseArchive> archive(libzip->open_from_source(source, ZIP_RDONLY, &error));
    if (!archive) {
        libzip->source_free(source);
        return failure(*libzip, error);
    }
    return read_all(*libzip, archive.get(), password, sink);
}

}  // namespace quill::zip
