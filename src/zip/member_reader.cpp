#include "zip/member_reader.h"

#include "archive/ciphers/traditional_cipher.h"
#include "codec/checksum.h"
#include "text/utf8.h"
#include "zip/libzip_member.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <zlib.h>

namespace quill::zip {
namespace {

constexpr std::uint64_t largest_in_one = 64U << 20U;
constexpr std::uint64_t deflate_most_ratio = 1032;
constexpr std::size_t piece = 256U << 10U;

constexpr std::array<std::string_view, 4> fate_names{"verified", "whole", "damaged", "refused"};

/// Whether the authentication code of AES stands in for the CRC (AE-2).
bool has_no_crc(const Member& member) {
    return member.is_aes() && get16(*extra_field(member.extra, extra_aes), 0) == 2;
}

void tell(Content& content, Grade grade, std::string kind, std::uint64_t at, std::string text) {
    content.problems.push_back({grade, std::move(kind), at, {}, std::move(text)});
}

}  // namespace

std::string_view name_of(Fate fate) {
    return fate_names.at(static_cast<std::size_t>(fate));
}

/// A member's compressed bytes, decrypted on the way where need be.
struct MemberReader::Source {
    Header local;
    std::uint64_t at = 0;   // of `data` in the file
    std::string_view data;  // what is left of them
    bool ended = false;     // a compressed stream came to its proper end
    bool broken = false;    // a compressed stream did not
    bool vouched = false;   // something else than the CRC has verified the bytes
    std::optional<archive::TraditionalCipher> cipher;
    std::string plain;

    /// The next bytes, at least one while there are any.
    std::string_view next() {
        std::string_view bytes = data.substr(0, piece);
        data.remove_prefix(bytes.size());
        if (!cipher) return bytes;
        plain = bytes;
        cipher->decrypt(plain);
        return plain;
    }
};

/// Counts and checks what goes to the sink.
class MemberReader::Meter {
  public:
    explicit Meter(const Sink& sink) : sink_(sink) {}

    bool take(std::string_view bytes) {
        crc_ = codec::crc32(crc_, bytes);
        size_ += bytes.size();
        if (!bytes.empty() && !sink_(bytes)) stopped_ = true;
        return !stopped_;
    }

    std::uint64_t size() const { return size_; }
    std::uint32_t crc() const { return crc_; }
    bool stopped() const { return stopped_; }

  private:
    const Sink& sink_;
    std::uint64_t size_ = 0;
    std::uint32_t crc_ = 0;
    bool stopped_ = false;
};

void MemberReader::FreeDecompressor::operator()(libdeflate_decompressor* decompressor) const {
    libdeflate_free_decompressor(decompressor);
}

MemberReader::MemberReader(const Archive& archive, std::string password)
    : archive_(archive), password_(std::move(password)) {}

MemberReader::~MemberReader() = default;

Content MemberReader::read(const Member& member, const Sink& sink) {
    const std::optional<Member> own = as_in_own_header(member);
    if (!own || checks_out(member, sink) || !checks_out(*own, sink)) return read_as(member, sink);
    Content content = read_as(*own, sink);
    tell(content, Grade::repaired, "header-differs", member.header_offset,
         "its own header and the directory disagree, and its data agree with its own header");
    return content;
}

/// The member with the numbers of its own header, where these are others and could be right.
std::optional<Member> MemberReader::as_in_own_header(const Member& member) const {
    if (member.recovered || member.elsewhere || member.is_encrypted()) return std::nullopt;
    const std::optional<Header> header = parse_local_header(archive_.bytes(), member.local_offset);
    if (!header || !states_sizes(*header) || header->size > member.room ||
        header->compressed_size > member.room - header->size) {
        return std::nullopt;
    }
    Member own = member;
    own.method = header->method;
    own.crc = header->crc;
    own.compressed_size = header->compressed_size;
    own.uncompressed_size = header->uncompressed_size;
    const bool differs = own.method != member.method || own.crc != member.crc ||
                         own.compressed_size != member.compressed_size ||
                         own.uncompressed_size != member.uncompressed_size;
    return differs ? std::optional(std::move(own)) : std::nullopt;
}

/// Reads the member without giving its bytes to `sink`, and returns whether it is verified.
bool MemberReader::checks_out(const Member& member, const Sink& sink) {
    return read_as(member, [&](std::string_view) { return sink({}); }).fate == Fate::verified;
}

Content MemberReader::read_as(const Member& member, const Sink& sink) {
    Content content;
    Source source;
    if (!locate(member, source, content) || !prepare_decryption(member, source, content)) return content;
    Meter meter(sink);
    const std::uint16_t method = member.content_method();
    if (member.is_aes() || (method != method_stored && method != method_deflated)) {
        read_through_libzip(member, source, meter, content);
    } else if (method == method_stored) {
        copy_stored(source, meter);
    } else {
        inflate(member, source, meter, content);
    }
    if (content.needs_password) return content;
    judge(member, source, meter, content);
    return content;
}

/// Finds the member's data by its local header, and tells where the two headers differ.
bool MemberReader::locate(const Member& member, Source& source, Content& content) const {
    const std::string_view bytes = archive_.bytes();
    if (member.elsewhere) {
        tell(content, Grade::lost, "other-volume", 0, "it lies in another volume of a split archive");
        return false;
    }
    if ((member.flags & (strong_encryption_flag | masked_header_flag | patch_flag)) != 0) {
        tell(content, Grade::lost, "unsupported", member.local_offset, "it has strong encryption, which can't be read");
        return false;
    }
    std::uint64_t at = member.local_offset;
    std::optional<Header> local = parse_local_header(bytes, at);
    if (!local && archive_.directory() && archive_.directory()->shift != 0) {
        at -= static_cast<std::uint64_t>(archive_.directory()->shift);
        local = parse_local_header(bytes, at);
    }
    if (!local) {
        tell(content, Grade::lost, "no-local-header", member.local_offset, "no member begins where it should");
        return false;
    }
    source.local = *local;
    source.at = at + local->size;
    source.data = slice(bytes, source.at, member.compressed_size);
    if (local->name != member.raw_name) {
        tell(content, Grade::damaged, "names-differ", at,
             "its own header calls it \"" + text::to_utf8(local->name) + "\", the directory calls it \"" +
                 std::string(member.name) + "\"");
    }
    const bool silent = !states_sizes(*local);
    const bool sizes_differ = local->compressed_size != member.compressed_size ||
                              local->uncompressed_size != member.uncompressed_size || local->crc != member.crc;
    if (!member.recovered && (local->method != member.method || (sizes_differ && !silent))) {
        tell(content, Grade::repaired, "header-differs", at, "its own header and the directory disagree");
    }
    return true;
}

/// Reads the encryption header of a member with a traditional password.
bool MemberReader::prepare_decryption(const Member& member, Source& source, Content& content) const {
    if (!member.is_encrypted()) return true;
    if (password_.empty()) {
        tell(content, Grade::lost, "password", source.at, "it needs a password");
        content.needs_password = true;
        return false;
    }
    if (member.is_aes()) return true;
    if (member.method == method_aes) {
        tell(content, Grade::lost, "unsupported", source.at, "it is encrypted in an unknown way");
        return false;
    }
    archive::TraditionalCipher cipher(password_);
    const std::uint8_t check = cipher.read_header(source.data.substr(0, archive::TraditionalCipher::header_size));
    const bool by_crc = check == member.crc >> 24U;
    const bool crc_came_later = ((source.local.flags | member.flags) & descriptor_flag) != 0;
    const bool by_time = crc_came_later && check == (source.local.dos_time >> 8U & 0xFFU);
    if (source.data.size() < archive::TraditionalCipher::header_size || (!by_crc && !by_time)) {
        tell(content, Grade::lost, "password", source.at, "the password is wrong");
        content.needs_password = true;
        return false;
    }
    const std::uint16_t method = member.content_method();
    if (method != method_stored && method != method_deflated) return true;  // libzip does it all
    source.data.remove_prefix(archive::TraditionalCipher::header_size);
    source.cipher = cipher;
    return true;
}

void MemberReader::copy_stored(Source& source, Meter& meter) {
    while (!source.data.empty() && meter.take(source.next())) {
    }
}

void MemberReader::inflate(const Member& member, Source& source, Meter& meter, Content& content) {
    const std::uint64_t size = member.uncompressed_size;
    const bool believable = member.sizes_known && size <= largest_in_one && source.data.size() <= largest_in_one &&
                            size <= source.data.size() * deflate_most_ratio + piece;
    if (believable && !source.cipher && inflate_whole(member, source, meter, content)) {
        source.ended = true;
        return;
    }
    inflate_in_pieces(source, meter, content);
}

/// One call of libdeflate. False, with nothing given out, where the data are not as stated.
bool MemberReader::inflate_whole(const Member& member, const Source& source, Meter& meter, Content& content) {
    if (!decompressor_) decompressor_.reset(libdeflate_alloc_decompressor());
    const auto size = static_cast<std::size_t>(member.uncompressed_size);
    if (size > buffer_size_) {
        buffer_.reset();
        buffer_ = std::make_unique_for_overwrite<char[]>(size);
        buffer_size_ = size;
    }
    std::size_t used = 0, made = 0;
    char nothing = 0;  // for a member of size 0: libdeflate wants a place all the same
    char* out = size == 0 ? &nothing : buffer_.get();
    const libdeflate_result result = libdeflate_deflate_decompress_ex(decompressor_.get(), source.data.data(),
                                                                      source.data.size(), out, size, &used, &made);
    if (result != LIBDEFLATE_SUCCESS) return false;
    if (used < source.data.size()) {
        tell(content, Grade::repaired, "extra-data", source.at + used, "bytes follow its compressed data");
    }
    meter.take({out, made});
    return true;
}

void MemberReader::inflate_in_pieces(Source& source, Meter& meter, Content& content) {
    z_stream stream = {};
    constexpr int raw_deflate = -MAX_WBITS;
    if (inflateInit2(&stream, raw_deflate) != Z_OK) {
        source.broken = true;
        return;
    }
    std::string out(piece, '\0');
    const std::size_t total = source.data.size();
    int result = Z_OK;
    while (result == Z_OK && !meter.stopped() && !source.data.empty()) {
        const std::string_view in = source.next();
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(in.data()));  // zlib does not write to it
        stream.avail_in = static_cast<uInt>(in.size());
        do {
            stream.next_out = reinterpret_cast<Bytef*>(out.data());
            stream.avail_out = static_cast<uInt>(out.size());
            result = ::inflate(&stream, Z_NO_FLUSH);
            if (result == Z_BUF_ERROR) result = Z_OK;  // only that this piece is used up
            if (!meter.take(std::string_view(out).substr(0, out.size() - stream.avail_out))) break;
        } while (result == Z_OK && stream.avail_out == 0);
    }
    source.ended = result == Z_STREAM_END;
    const std::size_t used = total - source.data.size() - stream.avail_in;
    inflateEnd(&stream);
    if (source.ended) {
        source.data = slice(archive_.bytes(), source.at + used, std::string_view::npos);
    } else if (!meter.stopped()) {
        source.broken = true;
        tell(content, Grade::damaged, result == Z_OK ? "cut" : "bad-data", source.at + used,
             result == Z_OK ? "its compressed data end too early" : "its compressed data are broken");
    }
}

void MemberReader::read_through_libzip(const Member& member, Source& source, Meter& meter, Content& content) {
    const std::uint16_t method = member.content_method();
    if (!libzip_reads(method)) {
        tell(content, Grade::lost, "unsupported", source.at, "its method, " + method_name(method) + ", can't be read");
        source.broken = true;
        return;
    }
    Header header = source.local;
    header.flags = member.flags;
    header.method = member.method;
    header.extra = member.extra;
    header.dos_time = member.dos_time;
    header.crc = member.crc;
    header.compressed_size = source.data.size();
    header.uncompressed_size = member.uncompressed_size;
    LibzipResult result = read_member_by_libzip(header, source.data, password_,
                                                [&](std::string_view bytes) { return meter.take(bytes); });
    if (!result.whole && has_no_crc(member) && meter.size() == member.uncompressed_size && !meter.stopped()) {
        // libzip holds even a CRC that is left out against the content. With the one that came out, its answer is that
        // of the authentication code.
        header.crc = meter.crc();
        result = read_member_by_libzip(header, source.data, password_, [](std::string_view) { return true; });
    }
    if (result.wrong_password) {
        tell(content, Grade::lost, "password", source.at, "the password is wrong");
        content.needs_password = true;
        return;
    }
    source.ended = source.vouched = result.whole;
    source.broken = !result.whole;
    if (!result.whole && !meter.stopped()) {
        tell(content, Grade::damaged, "bad-data", source.at, "its data are broken (" + result.error + ")");
    }
}

/// Compares what came out with what was promised.
void MemberReader::judge(const Member& member, const Source& source, const Meter& meter, Content& content) const {
    content.size = meter.size();
    content.sink_failed = meter.stopped();
    if (source.broken && meter.size() == 0) return;
    content.fate = Fate::damaged;
    if (content.sink_failed || source.broken) return;
    if (!member.sizes_known) {
        // The numbers behind a stream that ended by itself, if they are there.
        const bool marked = get32(source.data, 0) == descriptor_signature;
        const bool agrees = source.ended && get32(source.data, marked ? 4 : 0) == meter.crc() && meter.size() != 0;
        if (source.ended) {
            content.fate = agrees ? Fate::verified : Fate::whole;
        } else {
            tell(content, Grade::damaged, "cut", source.at, "nothing tells where it ends");
        }
        return;
    }
    if (member.compressed_size >
        archive_.bytes().size() - std::min<std::uint64_t>(source.at, archive_.bytes().size())) {
        tell(content, Grade::damaged, "cut", archive_.bytes().size(), "the file ends inside it");
    }
    if (meter.size() != member.uncompressed_size) {
        tell(content, Grade::damaged, "wrong-size", source.at,
             "it has " + std::to_string(meter.size()) + " bytes and says " + std::to_string(member.uncompressed_size));
    }
    const bool right_crc = source.vouched || meter.crc() == member.crc;
    if (!right_crc) tell(content, Grade::damaged, "bad-crc", source.at, "its CRC is wrong");
    if (right_crc && meter.size() == member.uncompressed_size) content.fate = Fate::verified;
}

}  // namespace quill::zip
