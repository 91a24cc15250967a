#include "archive/changing/packing.h"

#include "archive/container/format.h"
#include "archive/container/member_time.h"
#include "archive/methods/compressors.h"
#include "checksum/checksum.h"
#include "text/utf8.h"

#include <climits>
#include <libdeflate.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace quill::zip {
namespace {

constexpr std::uint64_t most_in_memory = 32U << 20U;
constexpr std::uint64_t largest_in_one = 16U << 20U;  // about a tenth of a second, in which it can't be stopped
constexpr std::size_t piece = 256U << 10U;
constexpr std::uint64_t needs_zip64 = 0xFFFFFFFF;
constexpr std::uint16_t made_by_unix = 3U << 8U | 30U;
constexpr std::uint16_t version_plain = 20;
constexpr std::uint16_t version_zip64 = 45;
constexpr std::uint16_t version_aes = 51;
constexpr std::uint32_t regular_file = 0100000;
constexpr std::uint32_t directory_file = 0040000;
constexpr std::uint32_t link_file = 0120000;

Error stopped() {
    return {ErrorCode::cancelled, 0, "stopped"};
}

/// Encrypts the bytes if there is a password, and puts them into the staging place.
class Stager {
  public:
    Stager(Staging& staging, const PackOptions& options, WatchKeeper& keeper) : staging_(staging), keeper_(keeper) {
        if (!options.password.empty()) encryptor_ = archive::make_encryptor(options.encryption, options.password);
    }

    Status begin(std::uint32_t crc) { return encryptor_ ? staging_.append(encryptor_->head(crc)) : Status(Done{}); }
    Status end() { return encryptor_ ? staging_.append(encryptor_->tail()) : Status(Done{}); }

    Status put(std::string_view bytes) {
        Status status = Done{};
        const bool all = in_pieces(bytes, keeper_, [&](std::string_view part) {
            if (!encryptor_) {
                status = staging_.append(part);
            } else {
                std::string encrypted(part);
                encryptor_->encrypt(encrypted);
                status = staging_.append(encrypted);
            }
            return status.ok();
        });
        return all || !status ? status : Status(stopped());
    }

    bool goes_on() { return keeper_.goes_on(); }

  private:
    Staging& staging_;
    WatchKeeper& keeper_;
    std::unique_ptr<archive::Encryptor> encryptor_;
};

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

/// Returns the deflated bytes, or nothing if they would not be fewer.
std::string deflate_whole(std::string_view bytes, int level) {
    const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(libdeflate_alloc_compressor(level));
    if (!compressor || bytes.size() < 2) return {};
    std::string out(bytes.size() - 1, '\0');
    out.resize(libdeflate_deflate_compress(compressor.get(), bytes.data(), bytes.size(), out.data(), out.size()));
    return out;
}

/// Compresses `bytes` and passes the parts to put(part), whose failure ends it.
template <class Put>
Status compress(std::string_view bytes, archive::Compressor& compressor, Stager& stager, Put&& put) {
    std::string out(piece, '\0');
    archive::Step step;
    while (step.state != archive::StreamState::ended) {
        const std::string_view in = bytes.substr(0, piece);
        step = compressor.step(in, out, in.size() == bytes.size());
        if (step.state == archive::StreamState::broken || step.state == archive::StreamState::too_large) {
            return Error{ErrorCode::io, 0, "compression failed"};
        }
        bytes.remove_prefix(step.read);
        if (!stager.goes_on()) return stopped();
        if (Status status = put(std::string_view(out).substr(0, step.written)); !status) return status;
    }
    return Done{};
}

/// Returns the compressed bytes, or nothing if they would not be fewer.
Result<std::string> compress_whole(std::string_view bytes, const PackOptions& options, Stager& stager) {
    if (options.method == method_deflated) return deflate_whole(bytes, options.level);
    const std::unique_ptr<archive::Compressor> compressor =
        archive::find_compression(options.method)->make(options.level);
    std::string out;
    const Status status = compress(bytes, *compressor, stager, [&](std::string_view part) {
        out.append(part);
        return Status(Done{});
    });
    if (!status) return status.error();
    return out.size() < bytes.size() ? std::move(out) : std::string();
}

Status pack_content(std::string_view bytes, const PackOptions& options, Stager& stager, PackedMember& member) {
    constexpr std::size_t sample = 1U << 20U;
    member.uncompressed_size = bytes.size();
    member.method = method_stored;
    if (options.method == method_stored) return stager.put(bytes);
    // The beginning of a large file decides whether it is compressed.
    const bool large = bytes.size() > largest_in_one;
    const Result<std::string> packed = compress_whole(large ? bytes.substr(0, sample) : bytes, options, stager);
    if (!packed) return packed.error();
    if (packed->empty()) return stager.put(bytes);
    member.method = options.method;
    if (!large) return stager.put(*packed);
    const std::unique_ptr<archive::Compressor> compressor =
        archive::find_compression(options.method)->make(options.level);
    return compress(bytes, *compressor, stager, [&](std::string_view part) { return stager.put(part); });
}

Status pack_bytes(std::string_view bytes, const PackOptions& options, Stager& stager, PackedMember& member) {
    Status status = stager.begin(member.crc);
    if (status) status = pack_content(bytes, options, stager, member);
    return status ? stager.end() : status;
}

/// Returns the fields that both headers share, from `version needed` to the uncompressed size.
std::string shared_fields(const PackedMember& member, bool wide_sizes, bool zip64) {
    std::string out;
    const archive::CompressionMethod* const method = archive::find_compression(member.method);
    const bool is_aes = member.aes_strength != 0;
    const std::uint16_t of_method = method == nullptr ? version_plain : method->version;
    put16(out, std::max({of_method, zip64 ? version_zip64 : version_plain, is_aes ? version_aes : version_plain}));
    put16(out, member.flags);
    put16(out, is_aes ? method_aes : member.method);
    put32(out, to_dos_time(member.modified));
    put32(out, member.stated_crc());
    put32(out, wide_sizes ? needs_zip64 : member.compressed_size);
    put32(out, wide_sizes ? needs_zip64 : member.uncompressed_size);
    return out;
}

bool has_wide_sizes(const PackedMember& member) {
    return member.compressed_size >= needs_zip64 || member.uncompressed_size >= needs_zip64;
}

std::string timestamp_extra(std::time_t modified) {
    std::string out;
    if (modified > std::numeric_limits<std::int32_t>::max() || modified < std::numeric_limits<std::int32_t>::min()) {
        return out;
    }
    put16(out, extra_timestamp);
    put16(out, 5);
    out.push_back(1);  // a modification time follows
    put32(out, static_cast<std::uint32_t>(modified));
    return out;
}

/// Returns the field that states how a member is encrypted with AES.
std::string aes_extra(const PackedMember& member) {
    constexpr std::uint16_t without_crc = 2;
    std::string out;
    if (member.aes_strength == 0) return out;
    put16(out, extra_aes);
    put16(out, 7);
    put16(out, without_crc);
    out += "AE";
    out.push_back(static_cast<char>(member.aes_strength));
    put16(out, member.method);
    return out;
}

std::uint16_t name_flags(const std::string& name) {
    const bool ascii =
        std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return ascii ? 0 : utf8_flag;
}

/// Returns a member with everything but its content. Fails with `bad_argument` for a name that does not fit in a
/// header.
Result<PackedMember> begin_member(const std::string& name, const struct stat& status, const PackOptions& options,
                                  const Staging& staging) {
    PackedMember member;
    member.name = text::to_utf8(name);
    if (member.name.empty() || member.name.size() > std::numeric_limits<std::uint16_t>::max()) {
        return Error{ErrorCode::bad_argument, 0, "a member needs a name of at most 65535 bytes"};
    }
    member.flags = name_flags(member.name);
    if (!options.password.empty()) {
        member.flags |= encrypted_flag;
        member.aes_strength = archive::aes_strength(options.encryption);
    }
    member.modified = status.st_mtime;
    member.staged_at = staging.size();
    return member;
}

}  // namespace

Status Staging::append(std::string_view bytes) {
    if (!file_ && memory_.size() + bytes.size() <= most_in_memory) {
        memory_.append(bytes);
    } else {
        if (!file_) {
            Result<files::AtomicFile> file = files::AtomicFile::create(beside_, files::Access::of_owner);
            if (!file) return file.error();
            file_.emplace(std::move(*file));
        }
        if (!file_->write(bytes)) return file_->error();
    }
    size_ += bytes.size();
    return Done{};
}

void PackedMember::rename(std::string_view new_name) {
    name = new_name;
    flags = static_cast<std::uint16_t>((flags & ~utf8_flag) | name_flags(name));
}

std::string PackedMember::local_header() const {
    const bool wide = has_wide_sizes(*this);
    std::string extra;
    if (wide) {
        put16(extra, extra_zip64);
        put16(extra, 16);
        put64(extra, uncompressed_size);
        put64(extra, compressed_size);
    }
    extra += timestamp_extra(modified) + aes_extra(*this);
    std::string out;
    put32(out, local_signature);
    out += shared_fields(*this, wide, wide);
    put16(out, name.size());
    put16(out, extra.size());
    return out + name + extra;
}

std::string PackedMember::central_header(std::uint64_t local_offset) const {
    const bool wide = has_wide_sizes(*this), far = local_offset >= needs_zip64;
    std::string extra;
    if (wide || far) {
        put16(extra, extra_zip64);
        put16(extra, (wide ? 16U : 0U) + (far ? 8U : 0U));
        if (wide) put64(extra, uncompressed_size);
        if (wide) put64(extra, compressed_size);
        if (far) put64(extra, local_offset);
    }
    extra += timestamp_extra(modified) + aes_extra(*this);
    std::string out;
    put32(out, central_signature);
    put16(out, made_by_unix);
    out += shared_fields(*this, wide, wide || far);
    put16(out, name.size());
    put16(out, extra.size());
    put16(out, 0);  // comment
    put16(out, 0);  // volume
    put16(out, 0);  // internal attributes
    constexpr std::uint32_t dos_directory = 0x10;
    put32(out, mode << 16U | ((mode & directory_file) != 0 ? dos_directory : 0U));
    put32(out, far ? needs_zip64 : local_offset);
    return out + name + extra;
}

Result<PackedMember> pack_file(const std::string& path, const std::string& name, const PackOptions& options,
                               Staging& staging, WatchKeeper& keeper) {
    constexpr std::uint32_t permissions = 0777;
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return system_error(errno);
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return file.error();
    Result<PackedMember> member = begin_member(name, status, options, staging);
    if (!member) return member;
    member->mode = regular_file | (status.st_mode & permissions);
    keeper.expect(file->bytes().size() * 2);
    const bool all = in_pieces(file->bytes(), keeper, [&](std::string_view part) {
        member->crc = quill::crc32(member->crc, part);
        return true;
    });
    if (!all || !keeper.goes_on()) return stopped();
    Stager stager(staging, options, keeper);
    if (Status packed = pack_bytes(file->bytes(), options, stager, *member); !packed) return packed.error();
    member->compressed_size = staging.size() - member->staged_at;
    if (file->cut_short()) return Error{ErrorCode::io, 0, "the file was cut while it was read"};
    return member;
}

Result<PackedMember> pack_link(const std::string& path, const std::string& name, const PackOptions& options,
                               Staging& staging) {
    struct stat status = {};
    std::string target(PATH_MAX, '\0');
    const ssize_t size = readlink(path.c_str(), target.data(), target.size());
    if (size < 0 || lstat(path.c_str(), &status) != 0) return system_error(errno);
    target.resize(static_cast<std::size_t>(size));
    Result<PackedMember> member = begin_member(name, status, options, staging);
    if (!member) return member;
    member->mode = link_file | 0777U;
    member->crc = quill::crc32(0, target);
    WatchKeeper unwatched({});
    Stager stager(staging, options, unwatched);
    if (Status packed = pack_bytes(target, options, stager, *member); !packed) return packed.error();
    member->compressed_size = staging.size() - member->staged_at;
    return member;
}

PackedMember pack_directory(const std::string& name, std::time_t modified) {
    PackedMember member;
    member.name = text::to_utf8(name) + "/";
    member.flags = name_flags(member.name);
    member.mode = directory_file | 0755U;
    member.modified = modified;
    return member;
}

}  // namespace quill::zip
